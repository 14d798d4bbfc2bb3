"""Collects what the finder takes for hands and what is none: the negatives that matter.

    mine.py FINDER_CHECKPOINT OUT.pkl --hands DIR --scenes P --rooms P

Looks through the training people's real pictures and rendered scenes; `train.py landmarks
--mined OUT.pkl` then learns to refuse these crops.
"""
import argparse
import math
import pickle

import cv2
import numpy as np
import torch

import export
import finder_data
import geometry
import real_hands
import rendered
from landmark_data import PATCH_PIXELS

SCORE = 0.12
SCENES = 2500


def false_places(net, pixels, hands):
    """Candidates (x, y, size, angle) in picture pixels that are no hand."""
    canvas, (scale, left, top) = finder_data.whole_picture(pixels)
    with torch.no_grad():
        answer = net(torch.from_numpy(canvas).permute(2, 0, 1)[None].float())[0].numpy()
    frames = [geometry.frame_of(h) for h in hands]
    for _, x, y, size, angle, _ in finder_data.candidates(answer, SCORE):
        x, y, size = (x - left) / scale, (y - top) / scale, size / scale
        if all(math.hypot(x - f[0], y - f[1]) > 0.6 * max(size, f[2]) for f in frames):
            yield x, y, size, angle


def patch(pixels, x, y, size, angle):
    reach = 1.3 * size
    height, width = pixels.shape[:2]
    left, top = int(max(0, x - reach)), int(max(0, y - reach))
    right, bottom = int(min(width, x + reach)) + 1, int(min(height, y + reach)) + 1
    part = pixels[top:bottom, left:right]
    scale = min(1.0, PATCH_PIXELS / (2 * reach))
    if scale < 1:
        part = cv2.resize(part, None, fx=scale, fy=scale, interpolation=cv2.INTER_AREA)
    return part.copy(), ((x - left) * scale, (y - top) * scale, size * scale, angle)


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("checkpoint")
    parser.add_argument("out")
    for name in ("--hands", "--scenes", "--rooms"):
        parser.add_argument(name, required=True)
    arguments = parser.parse_args()
    torch.set_num_threads(1)
    cv2.setNumThreads(1)
    net = export.load("finder", arguments.checkpoint)
    mined = []
    for picture in real_hands.load(arguments.hands, "training"):
        if not picture.complete:
            continue
        for place in false_places(net, picture.pixels, [h.joints for h in picture.hands]):
            mined.append(patch(picture.pixels, *place))
    real = len(mined)
    rng = np.random.default_rng(1)
    scenes = rendered.Shards(arguments.scenes, rendered.SCENE_SHAPE)
    rooms = rendered.Shards(arguments.rooms, rendered.SCENE_SHAPE)
    scenes.rescan()
    rooms.rescan()
    for _ in range(SCENES):
        record = scenes.pick(rng)
        pixels = rendered.over(np.array(record["pixels"]), np.ascontiguousarray(rooms.pick(rng)["pixels"][..., :3]))
        hands = [h["joints"].astype(float) for h in record["hands"] if h["valid"] > 0.2]
        for place in false_places(net, pixels, hands):
            mined.append(patch(pixels, *place))
    with open(arguments.out, "wb") as file:
        pickle.dump({"real": mined[:real], "rendered": mined[real:]}, file)
    print(f"{real} from real pictures, {len(mined) - real} from rendered scenes")


if __name__ == "__main__":
    main()
