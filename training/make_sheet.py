"""A sheet of rendered scenes with exact labels, for tests of the shipped networks.

    make_sheet.py SCENES.bin ROOMS.bin OUT.png OUT.json

The scenes must come from a seed that no training has seen. The JSON names every tile's place
and its hands: "right", "joints" (21 x [x, y], pixels of the tile, y down, plain convention).
"""
import json
import sys

import cv2
import numpy as np

import geometry
import rendered

COLUMNS, ROWS = 4, 4
LEAST_SIZE = 38  # Pixels of a hand's box: what a test may expect to be found.


def usable(record):
    hands = [h for h in record["hands"] if h["valid"] > 0.2]
    return hands and all(h["valid"] > 0.9 and (h["visible"] > 0).sum() >= 19 and
                         geometry.frame_of(h["joints"].astype(float))[2] >= LEAST_SIZE for h in hands)


def main():
    scenes, rooms, picture_path, json_path = sys.argv[1:]
    records = np.memmap(scenes, rendered.record_type(rendered.SCENE_SHAPE), "r")
    backgrounds = np.memmap(rooms, rendered.record_type(rendered.SCENE_SHAPE), "r")
    height, width = rendered.SCENE_SHAPE
    sheet = np.zeros((ROWS * height, COLUMNS * width, 3), np.uint8)
    tiles = []
    for record in records:
        if len(tiles) == ROWS * COLUMNS:
            break
        if not usable(record):
            continue
        x, y = len(tiles) % COLUMNS * width, len(tiles) // COLUMNS * height
        room = cv2.GaussianBlur(np.ascontiguousarray(backgrounds[len(tiles)]["pixels"][..., :3]), (0, 0), 1.0)
        sheet[y:y + height, x:x + width] = rendered.over(np.array(record["pixels"]), room)
        hands = [{"right": bool(h["right"] > 0.5), "joints": np.round(h["joints"].astype(float), 1).tolist()}
                 for h in record["hands"] if h["valid"] > 0.9]
        tiles.append({"x": x, "y": y, "width": width, "height": height, "hands": hands})
    cv2.imwrite(picture_path, sheet, [cv2.IMWRITE_PNG_COMPRESSION, 9])
    with open(json_path, "w") as file:
        json.dump(tiles, file, separators=(",", ":"))


if __name__ == "__main__":
    main()
