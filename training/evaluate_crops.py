"""How good the landmark network is on crops made from the reference joints.

    evaluate_crops.py LANDMARKS --hands DIR [--rendered P --rooms P]

Only for tuning: on people of the train split who are left out of training, and on rendered crops
that are (P: their pattern).
"""
import argparse

import cv2
import numpy as np
import torch

import camera
import export
import geometry
import networks
import real_hands
import rendered
from landmark_data import patch_of
from landmark_loss import PINCHED, RELEASED

RENDERED_CROPS = 1500


def tracked_crop(points, rng):
    """The matrix of a crop as a tracker would make it."""
    x, y, size, angle = geometry.frame_of(points)
    side = 1.5 * size * np.exp(rng.normal(0, 0.06))
    x, y = np.array([x, y]) + rng.normal(0, 0.03, 2) * side
    return geometry.crop_matrix(x, y, side, angle + rng.normal(0, 0.1), 128)


def tuning_crops(folder, part="tuning", seed=5):
    """Crops, with the joints in crop units."""
    rng = np.random.default_rng(seed)
    crops, joints, rows = [], [], []
    for picture in real_hands.load(folder, part):
        for hand in picture.hands:
            pixels, points = patch_of(picture, hand)
            matrix = tracked_crop(points, rng)
            crops.append(geometry.warp(pixels, matrix, 128, 128, cv2.BORDER_REPLICATE))
            joints.append(geometry.transform(geometry.invert(matrix), points) / 128)
            rows.append((picture.kind, picture.digit, hand.right))
    return np.stack(crops), np.stack(joints), rows


def rendered_crops(crops_pattern, rooms_pattern, seed=6):
    """The same of rendered hands in rendered rooms."""
    rng = np.random.default_rng(seed)
    hands = rendered.Shards(crops_pattern, rendered.CROP_SHAPE)
    rooms = rendered.Shards(rooms_pattern, rendered.SCENE_SHAPE)
    hands.rescan()
    rooms.rescan()
    crops, joints, rows = [], [], []
    for _ in range(RENDERED_CROPS):
        record = hands.pick(rng)
        hand, room = record["hands"][0], np.ascontiguousarray(rooms.pick(rng)["pixels"][:160, :160, :3])
        points = hand["joints"].astype(np.float64)
        matrix = tracked_crop(points, rng)
        front = geometry.warp(record["pixels"], matrix, 128, 128, cv2.BORDER_CONSTANT)
        crop = rendered.over(front, cv2.resize(room, (128, 128)))
        crops.append(camera.develop(crop, rng) if rng.random() < 0.5 else crop)
        joints.append(geometry.transform(geometry.invert(matrix), points) / 128)
        rows.append(("rendered", -1, hand["right"]))
    return np.stack(crops), np.stack(joints), rows


def predict(net, crops):
    net.eval()
    landmarks, hands = [], []
    with torch.no_grad():
        for start in range(0, len(crops), 64):
            points, hand = net(networks.pixels_of(crops[start:start + 64]))
            landmarks.append(points.numpy())
            hands.append(hand.numpy())
    return np.concatenate(landmarks), np.concatenate(hands)


def pinch_ratio(joints):
    j = geometry.reported(joints)
    return np.hypot(*(j[:, 4] - j[:, 8]).T) / np.maximum(1e-6, np.hypot(*(j[:, 9] - j[:, 0]).T))


def is_spread(joints):
    j = geometry.reported(joints)
    distance = lambda a, b: np.hypot(*(j[:, a] - j[:, b]).T)
    size = distance(0, 9)
    far = np.min([distance(0, tip) for tip in (8, 12, 16, 20)], 0) >= 1.6 * size
    apart = np.min([distance(8, 12), distance(12, 16), distance(16, 20)], 0) >= 0.3 * size
    return far & apart & (distance(4, 8) >= 0.7 * size)


def errors(predicted, joints):
    size = np.array([geometry.hand_size(j) for j in joints])
    return np.linalg.norm(predicted[..., :2] - joints, axis=-1) / size[:, None]


def figures(predicted, hands, joints, rows, choose):
    """The figures over the hands for which `choose` is true."""
    error = errors(predicted, joints)[choose][:, geometry.SEVEN]
    ours, theirs = predicted[choose][..., :2], joints[choose]
    right = np.array([r[2] for r in rows])[choose]
    known = np.isfinite(right)
    seen, true = pinch_ratio(ours), pinch_ratio(theirs)
    closed = true < PINCHED
    of_closed = lambda values: values[closed].mean() if closed.any() else float("nan")
    return {"n": int(choose.sum()), "mean": error.mean(), "median": np.median(error),
            "pck20": (error < 0.2).mean(), "all7": (error < 0.25).all(1).mean(),
            "pinch": ((seen < PINCHED) == closed).mean(), "too_wide": of_closed(seen - true),
            "begun": of_closed(seen < PINCHED), "kept": of_closed(seen < RELEASED),
            "parted": (seen > RELEASED)[true > RELEASED].mean() if (true > RELEASED).any() else float("nan"),
            "spread": (is_spread(ours) == is_spread(theirs)).mean(),
            "side": ((hands[choose][:, 1] > 0.5) == (right > 0.5))[known].mean() if known.any() else float("nan"),
            "presence": (hands[choose][:, 0] > 0.5).mean()}


def report(net, data):
    crops, joints, rows = data
    predicted, hands = predict(net, crops)
    kinds = np.array([r[0] for r in rows])
    table = {kind: figures(predicted, hands, joints, rows, kinds == kind) for kind in sorted(set(kinds))}
    table["all"] = figures(predicted, hands, joints, rows, kinds == kinds)
    return table


def lines(table):
    return "\n".join(f"  {kind:8s} " + " ".join(f"{k} {v:.3f}" if k != "n" else f"n {v:4d}" for k, v in row.items())
                     for kind, row in table.items())


if __name__ == "__main__":
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("checkpoint")
    parser.add_argument("--hands", required=True, help="folder of the labelled real hands")
    parser.add_argument("--rendered", default="", help="pattern of rendered crops that were not trained on")
    parser.add_argument("--rooms", default="", help="pattern of rendered rooms")
    arguments = parser.parse_args()
    torch.set_num_threads(1)
    network = export.load("landmarks", arguments.checkpoint)
    print(lines(report(network, tuning_crops(arguments.hands))))
    if arguments.rendered:
        print(lines(report(network, rendered_crops(arguments.rendered, arguments.rooms))))
