"""The detector's steps in Python: finder, crop, landmarks, second pass.

    detect.py FINDER.onnx LANDMARKS.onnx IMAGE...

Writes what `detect_hands` writes, for tuning and as a check of it; slower, and without tracking.
"""
import json
import math
import sys
import time

import cv2
import numpy as np

import finder_data
import geometry

SCORE, PRESENCE = 0.25, 0.6
AT_MOST = 2


class Detector:
    def __init__(self, finder, landmarks):
        self.finder, self.landmarks = cv2.dnn.readNetFromONNX(finder), cv2.dnn.readNetFromONNX(landmarks)

    def read(self, picture, x, y, size, angle):
        """Joints in picture pixels, confidences, presence, right."""
        side = geometry.CROP_PER_SIZE * size
        matrix = geometry.crop_matrix(x, y, side, angle, 128)
        source, inner = finder_data.shrink_first(picture, matrix)
        crop = geometry.warp(source, inner, 128, 128, cv2.BORDER_REPLICATE)
        self.landmarks.setInput(cv2.dnn.blobFromImage(crop))
        points, hand = self.landmarks.forward(["landmarks", "hand"])
        joints = geometry.transform(matrix, points[0, :, :2].astype(float) * 128)
        return joints, points[0, :, 2], float(hand[0, 0]), float(hand[0, 1])

    def detect(self, picture):
        canvas, (scale, left, top) = finder_data.whole_picture(picture)
        self.finder.setInput(cv2.dnn.blobFromImage(canvas))
        found = []
        for score, x, y, size, angle, right in finder_data.candidates(self.finder.forward("hands")[0], SCORE):
            place = (x - left) / scale, (y - top) / scale
            joints, confidence, presence, side = self.read(picture, *place, size / scale, angle)
            if presence < 0.3:
                continue
            again = geometry.frame_of(joints)
            joints, confidence, presence, side = self.read(picture, again[0], again[1], max(again[2], 0.6 * size / scale), again[3])
            if presence < PRESENCE:
                continue
            x, y, size, _ = geometry.frame_of(joints)
            if any(math.hypot(x - f[4][0], y - f[4][1]) < 0.5 * max(size, f[4][2]) for f in found):
                continue
            found.append((presence * score, joints, confidence, side, (x, y, size)))
        found.sort(key=lambda f: -f[0])
        return found[:AT_MOST]


def main():
    detector = Detector(sys.argv[1], sys.argv[2])
    for path in sys.argv[3:]:
        picture = cv2.imread(path)
        height, width = picture.shape[:2]
        start = time.process_time()
        found = detector.detect(picture)
        milliseconds = 1000 * (time.process_time() - start)
        hands = []
        for score, joints, confidence, right, _ in found:
            joints = geometry.reported(joints)
            hands.append({"chirality": "right" if right > 0.5 else "left", "score": score,
                          "landmarks": [[x / width, 1 - y / height, float(c)] for (x, y), c in zip(joints, confidence)]})
        print(json.dumps({"image": path, "width": width, "height": height, "milliseconds": milliseconds, "hands": hands}))


if __name__ == "__main__":
    cv2.setNumThreads(1)
    main()
