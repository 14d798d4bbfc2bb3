"""Sheets of training pictures, to look at them beside real ones.

    inspect_pictures.py landmarks|finder OUT.png --hands DIR [--crops P] [--scenes P] [--rooms P] [--real-share S]
"""
import argparse
import math

import cv2
import numpy as np

COUNT, COLUMNS = 96, 12
FINGERS = [[0, *range(1 + 4 * f, 5 + 4 * f)] for f in range(5)]


def landmark_tiles(arguments):
    from landmark_data import LandmarkBatches

    source = LandmarkBatches(arguments.hands, arguments.crops, arguments.rooms, arguments.mined,
                             arguments.real_share, arguments.seed)
    pictures, joints, visible, right, _, presence = source.batch(COUNT, 128)
    for picture, points, seen, side, present in zip(pictures, joints * 128, visible, right, presence):
        tile = picture.copy()
        if present > 0.5:
            for finger in FINGERS:
                cv2.polylines(tile, [points[finger].astype(int)], False, (0, 200, 0), 1)
            for (x, y), s in zip(points, seen):
                cv2.circle(tile, (int(x), int(y)), 1, (255, 255, 0) if s > 0.7 else (0, 255, 255) if s > 0.2 else (0, 0, 255), -1)
            cv2.putText(tile, "R" if side > 0.5 else "L" if side < 0.5 else "?", (3, 12), 0, 0.4, (255, 0, 255))
        yield tile


def finder_tiles(arguments):
    from finder_data import FinderBatches
    from networks import FINDER_STRIDE, FINDER_WIDTH

    source = FinderBatches(arguments.hands, arguments.scenes, arguments.rooms, arguments.real_share, arguments.seed)
    pictures, targets, _ = source.batch(COUNT)
    for picture, target in zip(pictures, targets):
        tile = picture.copy()
        for row, column in np.argwhere(target[0] > 0.999):
            dx, dy, size, c, s = target[1:6, row, column]
            x, y, side = (column + 0.5 + dx) * FINDER_STRIDE, (row + 0.5 + dy) * FINDER_STRIDE, math.exp(size) * FINDER_WIDTH
            box = cv2.boxPoints(((float(x), float(y)), (side, side), math.degrees(math.atan2(s, c))))
            cv2.polylines(tile, [box.astype(int)], True, (0, 255, 0), 1)
        yield tile


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("network", choices=["landmarks", "finder"])
    parser.add_argument("out")
    parser.add_argument("--hands", required=True)
    for name in ("--crops", "--scenes", "--rooms", "--mined"):
        parser.add_argument(name, default="")
    parser.add_argument("--real-share", type=float, default=0.4)
    parser.add_argument("--seed", type=int, default=1)
    arguments = parser.parse_args()
    tiles = list(landmark_tiles(arguments) if arguments.network == "landmarks" else finder_tiles(arguments))
    cv2.imwrite(arguments.out, np.vstack([np.hstack(tiles[i:i + COLUMNS]) for i in range(0, COUNT, COLUMNS)]))


if __name__ == "__main__":
    main()
