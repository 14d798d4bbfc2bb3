"""The labelled real pictures: training part, tuning part (people of the train split only) and holdout."""
import json
import pathlib
import re
from dataclasses import dataclass, field

import cv2
import numpy as np

# Of the train split these people only tune and calibrate; nothing is trained on them.
TUNING_SUBJECTS = re.compile(r"digits-s\d*7$|subhi-16$|rfhg-run(05|10|20|12)$|human-samples_in_stock-emotions|"
                             r"jetson-.*_1$|intel-preview_head-pose-face-detection-female$")
TUNING_EVERY = {"asl-davidlee": 12, "rf100-a": 8, "coderenko": 5}  # One-person sources: every n-th picture.


@dataclass
class Hand:
    joints: np.ndarray  # (21, 2), picture pixels.
    right: float  # 1 right, 0 left, nan unknown.
    weight: float = 1.0
    visible: np.ndarray = field(default_factory=lambda: np.ones(21, np.float32))


@dataclass
class Picture:
    path: str
    pixels: np.ndarray
    hands: list
    kind: str
    complete: bool
    subject: str
    digit: int = -1


def part_of(record, index):
    if record["split"] == "holdout":
        return "holdout"
    every = TUNING_EVERY.get(record["subject"])
    tuning = TUNING_SUBJECTS.match(record["subject"]) or (every and index % every == 0)
    return "tuning" if tuning else "training"


def hands_of(record):
    size = np.array([record["width"], record["height"]], np.float32)
    for hand in record["hands"]:
        sure = hand["chirality_confidence"] >= 0.3
        right = float(hand["chirality"] == "right") if sure else float("nan")
        yield Hand(np.array(hand["landmarks"], np.float32) * size, right, 0.3 if hand["spread"] > 0.12 else 1.0)


def load(folder, part):
    """The pictures of "training", "tuning" or "holdout"."""
    folder = pathlib.Path(folder)
    pictures, counts = [], {}
    for line in open(folder / "labels.jsonl"):
        record = json.loads(line)
        index = counts[record["subject"]] = counts.get(record["subject"], -1) + 1
        if part_of(record, index) != part:
            continue
        complete = bool(record["complete"]) and not record.get("doubtful_hands")
        digit = record.get("digit")
        pictures.append(Picture(str(folder / record["image"]), cv2.imread(str(folder / record["image"])),
                                list(hands_of(record)), record["kind"], complete, record["subject"],
                                -1 if digit is None else digit))
    return pictures
