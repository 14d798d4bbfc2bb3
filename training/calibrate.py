"""Makes the joints' confidences probabilities, on people who were not trained on.

    calibrate.py LANDMARKS OUT --hands DIR --crops P --rooms P [--mined FILE]

LANDMARKS is a checkpoint or an exported network. First its confidences learn further, on the
training people, which joints are to be seen (`confidence.py`). Then crops of the tuning people are taken
as a tracker would take them, developed by random cameras and partly covered; per joint a gain and
an offset of the confidence's logit are fitted so that it becomes the probability of lying within
0.25 hand sizes of the reference, covered joints counting as wrong. All is written into OUT, a
checkpoint for `export.py`.
"""
import argparse

import cv2
import numpy as np
import torch
import torch.nn.functional as F

import camera
import confidence
import export
import geometry
import landmark_data
import networks
import real_hands

REAL_SHARE, SEED = 0.5, 77
COVERED_CROPS = 0.7  # Of those that the confidences learn from.
VIEWS = 8
COVERED_VIEWS = 0.25
PULL = 20.0  # How strongly a joint's own gain and offset are held to the common ones.


def views(folder, rng):
    """Crops of the tuning people, their joints in crop units, and whether each is to be seen."""
    crops, joints, seen = [], [], []
    pictures = real_hands.load(folder, "tuning")
    rooms = landmark_data.RealRooms(pictures)
    texture = lambda size: rooms.pick(rng, size)
    for picture in pictures:
        for hand in picture.hands:
            pixels, points = landmark_data.patch_of(picture, hand)
            x, y, size, angle = geometry.frame_of(points)
            for _ in range(VIEWS):
                side = geometry.CROP_PER_SIZE * size * np.exp(rng.normal(0, 0.12))
                centre = np.array([x, y]) + rng.normal(0, 0.06, 2) * side
                flip = rng.random() < 0.5
                matrix = geometry.crop_matrix(*centre, side, angle + rng.normal(0, 0.2), networks.CROP_SIZE, flip)
                crop = geometry.warp(pixels, matrix, networks.CROP_SIZE, networks.CROP_SIZE, cv2.BORDER_REPLICATE)
                placed, visible = geometry.transform(geometry.invert(matrix), points), np.ones(21, np.float32)
                if rng.random() < COVERED_VIEWS:
                    landmark_data.cover(crop, placed, visible, texture, rng)
                if rng.random() < 0.5:
                    crop = camera.develop(crop, rng)
                crops.append(crop)
                joints.append(placed / networks.CROP_SIZE)
                seen.append(visible)
    return np.stack(crops), np.stack(joints), np.stack(seen)


def fit(logits, good):
    """Gains and offsets (21 each)."""
    common = torch.tensor([1.0, 0.0], requires_grad=True)
    own = torch.zeros(2, logits.shape[1], requires_grad=True)
    optimiser = torch.optim.LBFGS([common, own], max_iter=100)

    def loss():
        optimiser.zero_grad()
        value = F.binary_cross_entropy_with_logits(logits * (common[0] + own[0]) + common[1] + own[1], good,
                                                   reduction="sum") + PULL * (own ** 2).sum()
        value.backward()
        return value

    optimiser.step(loss)
    return (common[0] + own[0]).detach(), (common[1] + own[1]).detach()


def table(probability, good):
    """Predicted against observed, by tenths."""
    rows = []
    for low in np.arange(0, 1, 0.1):
        chosen = (probability >= low) & (probability < low + 0.1 + (1e-6 if low > 0.85 else 0))
        if chosen.any():
            rows.append(f"  {low:.1f}-{low + 0.1:.1f}: {int(chosen.sum()):6d} joints, said "
                        f"{float(probability[chosen].mean()):.2f}, right {float(good[chosen].mean()):.2f}")
    return "\n".join(rows)


def spread(said, name):
    low, middle, high = np.quantile(said.numpy(), (0.1, 0.5, 0.9))
    return (f"{name}: {len(said)} joints, mean {float(said.mean()):.2f}, median {middle:.2f}, tenths "
            f"{low:.2f} and {high:.2f}, above 0.3: {float((said > 0.3).float().mean()):.2f}")


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("landmarks")
    parser.add_argument("out")
    parser.add_argument("--hands", required=True, help="folder of the labelled real hands")
    parser.add_argument("--crops", required=True, help="pattern of the rendered crops")
    parser.add_argument("--rooms", required=True, help="pattern of the rendered rooms")
    parser.add_argument("--mined", default="", help="what mine.py collected")
    parser.add_argument("--pictures", type=int, default=100_000, help="how many crops the confidences learn from")
    arguments = parser.parse_args()
    torch.set_num_threads(1)
    cv2.setNumThreads(1)
    net = export.load("landmarks", arguments.landmarks)
    batches = landmark_data.LandmarkBatches(arguments.hands, arguments.crops, arguments.rooms, arguments.mined,
                                            REAL_SHARE, SEED, COVERED_CROPS)
    confidence.learn(net, batches, arguments.pictures,
                     lambda pictures, loss: print(f"{pictures} crops, loss {loss:.4f}", flush=True))

    crops, joints, seen = views(arguments.hands, np.random.default_rng(3))
    observed = confidence.observe(net, crops)
    good = confidence.correct(observed.points, joints, seen)
    with torch.no_grad():
        logits = observed.logits(net)
    # Half of the hands fit what the table then shows on the other half; the last fit uses all.
    even = torch.arange(len(crops)) // VIEWS % 2 == 0
    gain, offset = fit(logits[even], good[even])
    said, good_there = torch.sigmoid(logits[~even] * gain + offset), good[~even]
    hidden = torch.from_numpy(seen)[~even] == 0
    print(f"as learnt:\n{table(torch.sigmoid(logits[~even]), good_there)}")
    print(f"calibrated:\n{table(said, good_there)}")
    print(spread(said[hidden], "covered"))
    print(spread(said[~hidden], "others"))
    net.confidence_gain, net.confidence_offset = fit(logits, good)
    torch.save({"average": net.state_dict()}, arguments.out)


if __name__ == "__main__":
    main()
