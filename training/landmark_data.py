"""Training crops for the landmark network, mixed from rendered and real hands."""
import math
import os
import pickle

import cv2
import numpy as np

import camera
import geometry
import real_hands
import rendered
from geometry import CROP_PER_SIZE

REAL_KINDS = {"digits": 0.27, "closeup": 0.33, "webcam": 0.26, "video": 0.05, "photo": 0.09}
NEGATIVE_SHARE = 0.18
COVERED_SHARE = 0.35  # Unless told.
MINED_SHARE, DISPLACED_SHARE = 0.5, 0.15  # Of the negatives: mistaken for hands once; beside a hand.
SQUARE, SQUARES = 160, 2500  # Backgrounds are kept ready: pixels, and how many of each kind.
PATCH_PIXELS = 190  # Real hands are kept as patches of this size per 2.6 hand boxes.


def patch_of(picture, hand):
    """A part of the picture around the hand, no larger than needed, and the hand in its pixels."""
    x, y, size, _ = geometry.frame_of(hand.joints)
    reach = 1.3 * size
    height, width = picture.pixels.shape[:2]
    left, top = max(0, int(x - reach)), max(0, int(y - reach))
    right, bottom = min(width, int(x + reach) + 1), min(height, int(y + reach) + 1)
    part = picture.pixels[top:bottom, left:right]
    scale = min(1.0, PATCH_PIXELS / (2 * reach))
    if scale < 1:
        part = cv2.resize(part, None, fx=scale, fy=scale, interpolation=cv2.INTER_AREA)
    return part.copy(), (hand.joints - [left, top]) * scale


class RealHands:
    def __init__(self, pictures):
        self.by_kind = {}
        for picture in pictures:
            for hand in picture.hands:
                pixels, joints = patch_of(picture, hand)
                self.by_kind.setdefault(picture.kind, []).append((pixels, joints, hand.right, hand.weight))
        self.kinds = [k for k in REAL_KINDS if k in self.by_kind]
        self.shares = np.cumsum([REAL_KINDS[k] for k in self.kinds])

    def pick(self, rng):
        kind = self.kinds[int(np.searchsorted(self.shares, rng.random() * self.shares[-1]))]
        return self.by_kind[kind][int(rng.integers(len(self.by_kind[kind])))]


class RealRooms:
    """Squares of real pictures that hold no hand: backgrounds and negatives."""

    def __init__(self, pictures):
        self.pictures = [p for p in pictures if p.complete and min(p.pixels.shape[:2]) > 150]
        self.empty = [p for p in self.pictures if not p.hands]

    def pick(self, rng, pixels):
        for _ in range(12):
            pool = self.empty if rng.random() < 0.5 else self.pictures
            picture = pool[int(rng.integers(len(pool)))]
            height, width = picture.pixels.shape[:2]
            side = min(height, width) * math.exp(rng.uniform(math.log(0.2), 0))
            x, y = rng.uniform(side / 2, width - side / 2 + 1e-3), rng.uniform(side / 2, height - side / 2 + 1e-3)
            if all(self._apart(hand, x, y, side) for hand in picture.hands):
                break
        matrix = geometry.crop_matrix(x, y, side, rng.normal(0, 0.3), pixels, rng.random() < 0.5)
        if side > 2 * pixels:
            left, top = max(0, int(x - side)), max(0, int(y - side))
            part = picture.pixels[top:int(y + side), left:int(x + side)]
            scale = pixels / side
            part = cv2.resize(part, None, fx=scale, fy=scale, interpolation=cv2.INTER_AREA)
            matrix = matrix * scale - np.array([[0, 0, left * scale], [0, 0, top * scale]])
            return geometry.warp(part, matrix, pixels, pixels, cv2.BORDER_REFLECT)
        return geometry.warp(picture.pixels, matrix, pixels, pixels, cv2.BORDER_REFLECT)

    @staticmethod
    def _apart(hand, x, y, side):
        hand_x, hand_y, size, _ = geometry.frame_of(hand.joints)
        return max(abs(hand_x - x), abs(hand_y - y)) > side / 2 + 0.35 * size


def put_before(picture, front, mask, joints, visible):
    """Puts `front` before the picture where `mask` says so (0 to 255), and the joints there out of sight."""
    share = cv2.merge([mask, mask, mask])
    picture[:] = cv2.add(cv2.multiply(front, share, scale=1 / 255), cv2.multiply(picture, 255 - share, scale=1 / 255))
    height, width = mask.shape
    cells = joints.astype(int)
    for i, (x, y) in enumerate(cells):
        if 0 <= x < width and 0 <= y < height and mask[y, x] > 127:
            visible[i] = 0


def thing_mask(size, rng):
    """The outline of a thing: round, angular, or a table's edge that hides all beyond it."""
    mask = np.zeros((size, size), np.uint8)
    middle = rng.uniform(0.1, 0.9, 2) * size
    kind = rng.random()
    if kind < 0.4:
        axes = rng.uniform(0.05, 0.28, 2) * size
        cv2.ellipse(mask, (tuple(middle), tuple(2 * axes), float(rng.uniform(0, 180))), 255, -1)
    elif kind < 0.8:
        turns = np.sort(rng.uniform(0, 2 * math.pi, int(rng.integers(3, 7))))
        reach = rng.uniform(0.08, 0.32, len(turns))[:, None] * size
        corners = middle + reach * np.stack([np.cos(turns), np.sin(turns)], 1)
        cv2.fillPoly(mask, [corners.astype(np.int32)], 255)
    else:
        angle = rng.uniform(0, 2 * math.pi)
        y, x = np.mgrid[0:size, 0:size] - size / 2
        mask[x * math.cos(angle) + y * math.sin(angle) > rng.uniform(0.1, 0.4) * size] = 255
    return cv2.GaussianBlur(mask, (0, 0), 0.7) if rng.random() < 0.7 else mask


def cover(picture, joints, visible, texture, rng):
    """Puts something in front of a part of the crop: plain, of another picture, or of this one."""
    size = picture.shape[0]
    kind = rng.random()
    if kind < 0.3:
        front = np.full_like(picture, rng.integers(0, 256, 3, dtype=np.uint8))
    elif kind < 0.7:
        front = texture(size)
    else:
        front = np.roll(picture, (int(rng.integers(size)), int(rng.integers(size))), (0, 1))
    put_before(picture, front, thing_mask(size, rng), joints, visible)


class LandmarkBatches:
    """Draws batches; `real_share` of the hands are real, the others rendered (once there are any);
    something lies before `covered_share` of the hands."""

    def __init__(self, real_folder, crops_pattern, rooms_pattern, mined_path, real_share, seed,
                 covered_share=COVERED_SHARE):
        self.covered_share = covered_share
        self.mined_path, self.mined = mined_path, {}
        pictures = real_hands.load(real_folder, "training")
        self.real, self.rooms = RealHands(pictures), RealRooms(pictures)
        self.crops = rendered.Shards(crops_pattern, rendered.CROP_SHAPE)
        self.drawn_rooms = rendered.Shards(rooms_pattern, rendered.SCENE_SHAPE)
        self.real_share = real_share
        self.rng = np.random.default_rng(seed)
        self.real_squares = [self.rooms.pick(self.rng, SQUARE) for _ in range(SQUARES)]
        self.drawn_squares = []
        self.rescan()

    def rescan(self):
        if self.mined_path and os.path.exists(self.mined_path):
            with open(self.mined_path, "rb") as file:
                self.mined = pickle.load(file)
        self.crops.rescan()
        self.drawn_rooms.rescan()
        for _ in range(min(600, SQUARES - len(self.drawn_squares)) if self.drawn_rooms.count else 0):
            self.drawn_squares.append(self._drawn_square())

    def _drawn_square(self):
        rng = self.rng
        room = np.ascontiguousarray(self.drawn_rooms.pick(rng)["pixels"][..., :3])
        height, width = room.shape[:2]
        matrix = geometry.crop_matrix(rng.uniform(0.3, 0.7) * width, rng.uniform(0.3, 0.7) * height,
                                      height * rng.uniform(0.4, 1.1), rng.normal(0, 0.25), SQUARE, rng.random() < 0.5)
        return geometry.warp(room, matrix, SQUARE, SQUARE, cv2.BORDER_REFLECT)

    def background(self, pixels):
        """A part of a ready-made square, seen by another camera."""
        rng = self.rng
        bank = self.drawn_squares if self.drawn_squares and rng.random() < 0.55 else self.real_squares
        square = bank[int(rng.integers(len(bank)))]
        y, x = rng.integers(0, SQUARE - pixels + 1, 2)
        picture = square[y:y + pixels, x:x + pixels]
        if rng.random() < 0.5:
            picture = picture[:, ::-1]
        if rng.random() < 0.25:
            picture = cv2.GaussianBlur(picture, (0, 0), rng.uniform(0.5, 3.0))
        if rng.random() < 0.5:
            picture = cv2.convertScaleAbs(picture, alpha=rng.uniform(0.35, 1.3), beta=rng.uniform(0, 30))
        return np.ascontiguousarray(picture)

    def hand(self):
        """One hand: pixels (BGR or premultiplied BGRA), joints, right, weight, visible."""
        if self.crops.count and self.rng.random() >= self.real_share:
            record = self.crops.pick(self.rng)
            hand = record["hands"][0]
            return record["pixels"], hand["joints"].astype(np.float64), float(hand["right"]), 1.0, hand["visible"].copy()
        pixels, joints, right, weight = self.real.pick(self.rng)
        return pixels, joints.astype(np.float64), right, weight, np.ones(21, np.float32)

    def cover_with_hand(self, picture, joints, visible):
        """Puts another hand in front, so that this one stays in the middle."""
        rng = self.rng
        size = picture.shape[0]
        source = self.crops.pick(rng)["pixels"]
        angle, reach = rng.uniform(0, 2 * math.pi), rng.uniform(0.35, 0.65) * size
        centre = size / 2 + reach * np.array([math.cos(angle), math.sin(angle)])
        onto = geometry.crop_matrix(*centre, size * rng.uniform(0.6, 1.0), rng.uniform(0, 2 * math.pi), source.shape[0])
        front = geometry.warp(source, geometry.invert(onto), size, size, cv2.BORDER_CONSTANT)
        mask = np.ascontiguousarray(front[..., 3])
        solid = np.ascontiguousarray(front[..., :3])
        # The pixels are premultiplied: undone, so that the mask does not darken its edge twice.
        solid = np.minimum(255, solid.astype(np.float32) * 255 / np.maximum(mask, 1)[..., None]).astype(np.uint8)
        put_before(picture, solid, mask, joints, visible)

    def mistaken(self, pixels):
        """What the finder took for a hand."""
        rng = self.rng
        pool = self.mined["real" if rng.random() < 0.6 else "rendered"]
        source, frame = pool[int(rng.integers(len(pool)))]
        matrix = geometry.crop_matrix(*self.view(frame, False), pixels, rng.random() < 0.5)
        return geometry.warp(source, matrix, pixels, pixels, cv2.BORDER_REPLICATE)

    def view(self, frame, displace):
        """A random crop of a hand's frame; displaced ones miss it."""
        rng = self.rng
        x, y, size, angle = frame
        wild = rng.random() < 0.05
        side = CROP_PER_SIZE * size * math.exp(float(np.clip(rng.normal(0, 0.3 if wild else 0.13), -0.6, 0.6)))
        angle += rng.uniform(-1.2, 1.2) if wild else rng.normal(0, 0.26)
        x, y = np.array([x, y]) + np.clip(rng.normal(0, 0.055, 2), -0.2, 0.2) * side
        if displace:
            way, turn = rng.uniform(0.75, 1.1) * side, rng.uniform(0, 2 * math.pi)
            x, y, angle = x + way * math.cos(turn), y + way * math.sin(turn), rng.uniform(0, 2 * math.pi)
        return x, y, side, angle

    def item(self, pixels):
        rng = self.rng
        negative = rng.random() < NEGATIVE_SHARE
        if negative and rng.random() >= DISPLACED_SHARE:
            picture = self.mistaken(pixels) if self.mined and rng.random() < MINED_SHARE else self.background(pixels)
            return camera.develop(picture, rng), np.zeros((21, 2)), np.zeros(21), 0.5, 0.0, 0.0
        source, joints, right, weight, visible = self.hand()
        flip = rng.random() < 0.5
        view = self.view(geometry.frame_of(joints), negative)
        matrix = geometry.crop_matrix(*view, pixels, flip, math.exp(rng.normal(0, 0.06)))
        solid = source.shape[2] == 3
        picture = geometry.warp(source, matrix, pixels, pixels, cv2.BORDER_REPLICATE if solid else cv2.BORDER_CONSTANT)
        if not solid:
            picture = rendered.over(picture, self.background(pixels))
        joints = geometry.transform(geometry.invert(matrix), joints)
        if flip:
            right = 1 - right
        if not negative and rng.random() < self.covered_share:
            picture = np.ascontiguousarray(picture)
            if rng.random() < 0.25 and self.crops.count:
                self.cover_with_hand(picture, joints, visible)
            else:
                cover(picture, joints, visible, self.background, rng)
        return camera.develop(picture, rng), joints / pixels, visible, right, weight, 0.0 if negative else 1.0

    @staticmethod
    def mirrored(batch):
        """The same batch in a mirror: as good as another one, and free."""
        pictures, joints, visible, right, weight, presence = batch
        joints = joints.copy()
        joints[..., 0] = 1 - joints[..., 0]
        return np.ascontiguousarray(pictures[:, :, ::-1]), joints, visible, 1 - right, weight, presence

    def batch(self, count, pixels):
        """Pictures (n, s, s, 3) uint8; joints in crop units, visible, right (nan unknown), weight, presence."""
        items = [self.item(pixels) for _ in range(count)]
        columns = list(zip(*items))
        return (np.stack(columns[0]),) + tuple(np.array(c, np.float32) for c in columns[1:])
