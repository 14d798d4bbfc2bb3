"""The files that the renderer writes: fixed-size records, read through memory maps."""
import glob

import numpy as np

CROP_SHAPE = (160, 160)
SCENE_SHAPE = (192, 256)


def record_type(shape):
    """Premultiplied BGRA pixels (alpha: the person) and two hands, first the one in the middle."""
    hand = np.dtype([("valid", "<f4"), ("right", "<f4"), ("joints", "<f4", (21, 2)), ("visible", "<f4", 21)])
    return np.dtype([("pixels", "u1", shape + (4,)), ("hands", hand, 2), ("gesture", "<f4")])


class Shards:
    """All records of the files that match a pattern; new files appear with `rescan`."""

    def __init__(self, pattern, shape):
        self.pattern, self.type, self.files, self.count = pattern, record_type(shape), {}, 0

    def rescan(self):
        for path in sorted(glob.glob(self.pattern)):
            if path not in self.files:
                self.files[path] = np.memmap(path, self.type, "r")
        self.ends = np.cumsum([len(f) for f in self.files.values()])
        self.maps = list(self.files.values())
        self.count = int(self.ends[-1]) if self.files else 0

    def pick(self, rng):
        index = int(rng.integers(self.count))
        file = int(np.searchsorted(self.ends, index, side="right"))
        return self.maps[file][index - (self.ends[file - 1] if file else 0)]


def over(front, back):
    """Premultiplied BGRA over BGR of the same size."""
    import cv2

    rest = 255 - front[..., 3]
    return cv2.add(front[..., :3], cv2.multiply(back, cv2.merge([rest, rest, rest]), scale=1 / 255))
