"""Makes the joints' confidences probabilities, on people who were not trained on.

    calibrate.py CHECKPOINT --hands DIR OUT

Crops of the tuning people are taken as a tracker would take them, developed by random cameras
and partly covered; per joint a gain and an offset of the confidence's logit are fitted so that
it becomes the probability of lying within 0.25 hand sizes of the reference, covered joints
counting as wrong. They are written into OUT, a copy of the checkpoint for `export.py`.
"""
import argparse

import cv2
import numpy as np
import torch
import torch.nn.functional as F

import camera
import export
import geometry
import landmark_data
import landmark_loss
import real_hands

VIEWS = 8
PULL = 20.0  # How strongly a joint's own gain and offset are held to the common ones.


def views(folder, rng):
    """Crops, joints in crop units, visibility."""
    crops, joints, seen = [], [], []
    for picture in real_hands.load(folder, "tuning"):
        for hand in picture.hands:
            pixels, points = landmark_data.patch_of(picture, hand)
            x, y, size, angle = geometry.frame_of(points)
            for _ in range(VIEWS):
                side = 1.5 * size * np.exp(rng.normal(0, 0.12))
                centre = np.array([x, y]) + rng.normal(0, 0.06, 2) * side
                flip = rng.random() < 0.5
                matrix = geometry.crop_matrix(*centre, side, angle + rng.normal(0, 0.2), 128, flip)
                crop = geometry.warp(pixels, matrix, 128, 128, cv2.BORDER_REPLICATE)
                placed, visible = geometry.transform(geometry.invert(matrix), points), np.ones(21, np.float32)
                if rng.random() < 0.25:
                    landmark_data.cover(crop, placed, visible, rng)
                if rng.random() < 0.5:
                    crop = camera.develop(crop, rng)
                crops.append(crop)
                joints.append(placed / 128)
                seen.append(visible)
    return np.stack(crops), np.stack(joints), np.stack(seen)


def raw_logits(net, crops):
    points, logits = [], []
    with torch.no_grad():
        for start in range(0, len(crops), 64):
            pixels = torch.from_numpy(crops[start:start + 64]).permute(0, 3, 1, 2).float()
            heat, pooled = net.features(pixels.contiguous(memory_format=torch.channels_last))
            moments = landmark_loss.decode(heat)[1]
            logits.append(net.confidence_logits(moments, net.whole(pooled)[:, 3:]))
            points.append(moments[..., :2])
    return torch.cat(points), torch.cat(logits)


def correct(points, joints, seen):
    joints = torch.from_numpy(joints).float()
    error = (points - joints).norm(dim=-1) / landmark_loss.sizes(joints)[:, None]
    inside = ((joints > 0) & (joints < 1)).all(-1)
    return ((error < landmark_loss.CONFIDENT_WITHIN) & inside & (torch.from_numpy(seen) > 0)).float()


def fit(logits, good):
    """Gains and offsets (21 each)."""
    common = torch.tensor([1.0, 0.0])
    own = torch.zeros(2, logits.shape[1], requires_grad=True)
    common.requires_grad_()
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


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("checkpoint")
    parser.add_argument("out")
    parser.add_argument("--hands", required=True, help="folder of the labelled real hands")
    arguments = parser.parse_args()
    torch.set_num_threads(1)
    cv2.setNumThreads(1)
    net = export.load("landmarks", arguments.checkpoint)
    crops, joints, seen = views(arguments.hands, np.random.default_rng(3))
    points, logits = raw_logits(net, crops)
    good = correct(points, joints, seen)
    # Half of the hands fit what the table then shows on the other half; the last fit uses all.
    even = torch.arange(len(crops)) // VIEWS % 2 == 0
    gain, offset = fit(logits[even], good[even])
    print(f"as trained:\n{table(torch.sigmoid(logits[~even]), good[~even])}")
    print(f"calibrated:\n{table(torch.sigmoid(logits[~even] * gain + offset), good[~even])}")
    hidden = torch.from_numpy(seen)[~even] == 0
    said = torch.sigmoid(logits[~even] * gain + offset)
    print(f"covered joints: mean confidence {float(said[hidden].mean()):.2f}, "
          f"above 0.3: {float((said[hidden] > 0.3).float().mean()):.2f}; "
          f"others: {float(said[~hidden].mean()):.2f}, above 0.3: {float((said[~hidden] > 0.3).float().mean()):.2f}")
    gain, offset = fit(logits, good)
    state = torch.load(arguments.checkpoint, map_location="cpu")
    state["average"]["confidence_gain"], state["average"]["confidence_offset"] = gain, offset
    torch.save(state, arguments.out)


if __name__ == "__main__":
    main()
