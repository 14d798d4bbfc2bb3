"""Training pictures for the finder, mixed from rendered scenes and real pictures."""
import math

import cv2
import numpy as np
import torch

import camera
import geometry
import real_hands
import rendered
from networks import FINDER_HEIGHT, FINDER_STRIDE, FINDER_WIDTH

GREY = 128
TILE_WIDTH, TILE_HEIGHT, TILES = 224, 176, 1500  # Backgrounds are kept ready.
LARGEST = 400  # Pixels of a real picture's longer side.
ASPECTS = (16 / 9, 4 / 3, 1.0, 9 / 16)
ASPECT_SHARES = (0.42, 0.36, 0.16, 0.06)
REAL_KINDS = {"digits": 0.14, "closeup": 0.24, "webcam": 0.30, "video": 0.04, "photo": 0.10, "negative": 0.18}
ROWS, COLUMNS = FINDER_HEIGHT // FINDER_STRIDE, FINDER_WIDTH // FINDER_STRIDE


def letterbox(width, height):
    """Scale and the picture's top left corner in the finder's input."""
    scale = min(FINDER_WIDTH / width, FINDER_HEIGHT / height)
    return scale, (FINDER_WIDTH - width * scale) / 2, (FINDER_HEIGHT - height * scale) / 2


def whole_picture(pixels):
    """A whole picture as the program gives it to the finder, and the letterbox."""
    height, width = pixels.shape[:2]
    scale, left, top = letterbox(width, height)
    size = max(1, round(width * scale)), max(1, round(height * scale))
    small = cv2.resize(pixels, size, interpolation=cv2.INTER_AREA if scale < 1 else cv2.INTER_LINEAR)
    canvas = np.full((FINDER_HEIGHT, FINDER_WIDTH, 3), GREY, np.uint8)
    x, y = (FINDER_WIDTH - size[0]) // 2, (FINDER_HEIGHT - size[1]) // 2
    canvas[y:y + size[1], x:x + size[0]] = small
    return canvas, (scale, x, y)


def view_matrix(width, height, hands, content, inside, rng):
    """A random part of a picture with the aspect of `content` (width, height); content to picture.
    `inside`: nothing beyond the picture's edges is shown."""
    fit = max(width / content[0], height / content[1])
    fill = min(width / content[0], height / content[1])
    x, y = width / 2, height / 2
    choice = rng.random()
    if hands and choice < 0.45:  # One hand 0.1 to 0.8 as large as the picture is wide, somewhere.
        hand_x, hand_y, size, _ = geometry.frame_of(hands[int(rng.integers(len(hands)))].joints)
        pixel = size / (content[0] * math.exp(rng.uniform(math.log(0.1), math.log(0.8))))
        pixel = max(pixel, 0.25 * fill)
        x = hand_x - pixel * content[0] * rng.uniform(-0.4, 0.4)
        y = hand_y - pixel * content[1] * rng.uniform(-0.4, 0.4)
    else:
        pixel = fill + (fit - fill) * rng.random() ** 2 if choice < 0.8 else fill * rng.uniform(0.5, 1)
        pixel *= math.exp(rng.normal(0, 0.08))
        x += rng.normal(0, 0.06) * width
        y += rng.normal(0, 0.06) * height
    if inside:
        pixel = min(pixel, fill)
        x = float(np.clip(x, pixel * content[0] / 2, width - pixel * content[0] / 2))
        y = float(np.clip(y, pixel * content[1] / 2, height - pixel * content[1] / 2))
    angle = rng.normal(0, 0.09)
    c, s = math.cos(angle) * pixel, math.sin(angle) * pixel
    flip, stretch = (-1 if rng.random() < 0.5 else 1), math.exp(rng.normal(0, 0.06))
    matrix = np.array([[c * flip * stretch, -s / stretch, 0], [s * flip * stretch, c / stretch, 0]])
    matrix[:, 2] = np.array([x, y]) - matrix[:, :2] @ np.array([content[0] / 2, content[1] / 2])
    return matrix, flip < 0


def shrink_first(pixels, matrix):
    """Area-averages a large picture, so that sampling it coarsely does not alias."""
    step = math.sqrt(abs(np.linalg.det(matrix[:, :2])))
    if step < 1.7:
        return pixels, matrix
    small = cv2.resize(pixels, None, fx=1 / step, fy=1 / step, interpolation=cv2.INTER_AREA)
    return small, matrix * np.array([[small.shape[1] / pixels.shape[1]], [small.shape[0] / pixels.shape[0]]])


class Targets:
    """What the finder shall answer for one picture."""

    cell_y, cell_x = np.mgrid[0:ROWS, 0:COLUMNS] + 0.5

    def __init__(self, complete):
        self.values = np.zeros((8, ROWS, COLUMNS), np.float32)
        self.values[6] = np.nan
        self.weight = np.full((ROWS, COLUMNS), 1.0 if complete else 0.0, np.float32)

    def add(self, joints, right, sure):
        """A hand in input pixels; one that is hardly to be seen is neither asked for nor forbidden."""
        x, y, size, angle = geometry.frame_of(joints)
        u, v = x / FINDER_STRIDE, y / FINDER_STRIDE
        spread = max(0.6, 0.11 * size / FINDER_STRIDE)
        heat = np.exp(-((self.cell_x - u) ** 2 + (self.cell_y - v) ** 2) / (2 * spread ** 2))
        if not sure or not (0 <= u < COLUMNS and 0 <= v < ROWS):
            self.weight[heat > 0.1] = 0
            return
        heat[int(v), int(u)] = 1
        near = (heat > 0.4) & (heat > self.values[0])
        self.weight[heat > 0.1] = 1
        self.values[0] = np.maximum(self.values[0], heat)
        offsets = np.stack([u - self.cell_x, v - self.cell_y])
        self.values[1:3, near] = offsets[:, near]
        self.values[3, near] = math.log(max(size, 4) / FINDER_WIDTH)
        self.values[4, near], self.values[5, near] = math.cos(angle), math.sin(angle)
        self.values[6, near], self.values[7, near] = right, heat[near]


def reduced(picture):
    """Real pictures as large as the finder can make use of."""
    scale = LARGEST / max(picture.pixels.shape[:2])
    if scale < 1:
        picture.pixels = cv2.resize(picture.pixels, None, fx=scale, fy=scale, interpolation=cv2.INTER_AREA)
        for hand in picture.hands:
            hand.joints = hand.joints * scale
    return picture


class FinderBatches:
    def __init__(self, real_folder, scenes_pattern, rooms_pattern, real_share, seed):
        pictures = [reduced(p) for p in real_hands.load(real_folder, "training")]
        self.real = {kind: [p for p in pictures if p.kind == kind] for kind in REAL_KINDS}
        self.shares = np.cumsum([REAL_KINDS[k] for k in REAL_KINDS])
        self.scenes = rendered.Shards(scenes_pattern, rendered.SCENE_SHAPE)
        self.rooms = rendered.Shards(rooms_pattern, rendered.SCENE_SHAPE)
        self.empty = [p for p in pictures if not p.hands and p.complete]
        self.real_share = real_share
        self.rng = np.random.default_rng(seed)
        self.real_tiles = [self._tile(self.empty[int(self.rng.integers(len(self.empty)))].pixels) for _ in range(TILES)]
        self.drawn_tiles = []
        self.rescan()

    def rescan(self):
        self.scenes.rescan()
        self.rooms.rescan()
        for _ in range(min(500, TILES - len(self.drawn_tiles)) if self.rooms.count else 0):
            self.drawn_tiles.append(self._tile(self.rooms.pick(self.rng)["pixels"][..., :3]))

    def background(self, width, height):
        """A part of a ready-made background, seen by another camera."""
        rng = self.rng
        bank = self.drawn_tiles if self.drawn_tiles and rng.random() < 0.55 else self.real_tiles
        tile = bank[int(rng.integers(len(bank)))]
        x, y = rng.integers(0, TILE_WIDTH - width + 1), rng.integers(0, TILE_HEIGHT - height + 1)
        picture = tile[y:y + height, x:x + width]
        if rng.random() < 0.5:
            picture = picture[:, ::-1]
        if rng.random() < 0.3:
            picture = cv2.GaussianBlur(picture, (0, 0), rng.uniform(0.4, 2.5))
        return np.ascontiguousarray(picture)

    def _tile(self, pixels):
        matrix, _ = view_matrix(pixels.shape[1], pixels.shape[0], [], (TILE_WIDTH, TILE_HEIGHT), False, self.rng)
        pixels, matrix = shrink_first(np.ascontiguousarray(pixels), matrix)
        return geometry.warp(pixels, matrix, TILE_WIDTH, TILE_HEIGHT, cv2.BORDER_REFLECT)

    def source(self):
        """Pixels (BGR or premultiplied BGRA), hands, which of them are clear, and whether all are labelled."""
        rng = self.rng
        if self.scenes.count and rng.random() >= self.real_share:
            record = self.scenes.pick(rng)
            hands = [h for h in record["hands"] if h["valid"] > 0.2]
            return (record["pixels"],
                    [real_hands.Hand(h["joints"].astype(np.float64), float(h["right"])) for h in hands],
                    [h["valid"] > 0.9 for h in hands], True)
        kind = list(REAL_KINDS)[int(np.searchsorted(self.shares, rng.random() * self.shares[-1]))]
        picture = self.real[kind][int(rng.integers(len(self.real[kind])))]
        return picture.pixels, picture.hands, [True] * len(picture.hands), picture.complete

    def item(self):
        rng = self.rng
        pixels, hands, clear, complete = self.source()
        aspect = ASPECTS[int(rng.choice(len(ASPECTS), p=ASPECT_SHARES))]
        scale, left, top = letterbox(aspect, 1)
        width, height = round(aspect * scale), round(scale)
        left, top = (FINDER_WIDTH - width) // 2, (FINDER_HEIGHT - height) // 2
        zoomed = [h for h, c in zip(hands, clear) if c]
        solid = pixels.shape[2] == 3
        matrix, flip = view_matrix(pixels.shape[1], pixels.shape[0], zoomed, (width, height), not solid, rng)
        back = geometry.invert(matrix)
        pixels, matrix = shrink_first(pixels, matrix)
        border = cv2.BORDER_REPLICATE if rng.random() < 0.7 else cv2.BORDER_REFLECT
        picture = geometry.warp(pixels, matrix, width, height, border if solid else cv2.BORDER_CONSTANT)
        if not solid:
            picture = rendered.over(picture, self.background(width, height))
        elif border == cv2.BORDER_REFLECT:
            complete = False  # The mirrored border may show a hand again.
        picture = camera.develop(picture, rng, 0.55)
        canvas = np.full((FINDER_HEIGHT, FINDER_WIDTH, 3), GREY, np.uint8)
        canvas[top:top + height, left:left + width] = picture
        targets = Targets(complete)
        for hand, is_clear in zip(hands, clear):
            joints = geometry.transform(back, hand.joints)
            inside = ((joints > 0) & (joints < [width, height])).all(1).mean()
            if inside < 0.15:
                continue
            right = 1 - hand.right if flip else hand.right
            targets.add(joints + [left, top], right, is_clear and inside > 0.6)
        return canvas, targets.values, targets.weight

    @staticmethod
    def mirrored(batch):
        """The same batch in a mirror: as good as another one, and free."""
        pictures, values, weight = (np.ascontiguousarray(part) for part in
                                    (batch[0][:, :, ::-1], batch[1][..., ::-1], batch[2][..., ::-1]))
        values[:, [1, 5]] *= -1  # The offset to the right and the sine.
        values[:, 6] = 1 - values[:, 6]
        return pictures, values, weight

    def batch(self, count):
        items = [self.item() for _ in range(count)]
        return tuple(np.stack(column) for column in zip(*items))


def candidates(hands, threshold=0.3, most=6):
    """The finder's answer (7, rows, columns) as a list: score, x, y, size, angle, right; input pixels."""
    score = hands[0]
    highest = cv2.dilate(score, np.ones((3, 3), np.uint8))
    found = []
    for row, column in np.argwhere((score >= highest) & (score > threshold)):
        value = hands[:, row, column]
        found.append((float(value[0]), float(value[1]), float(value[2]), float(value[3]),
                      math.atan2(value[5], value[4]), float(value[6])))
    found.sort(reverse=True)
    kept = []
    for one in found[:4 * most]:
        if all(math.hypot(one[1] - k[1], one[2] - k[2]) > 0.5 * max(one[3], k[3]) for k in kept):
            kept.append(one)
    return kept[:most]


def tuning_pictures(folder):
    return real_hands.load(folder, "tuning")


def report(net, pictures, threshold=0.3):
    """By kind: share of hands found, false ones per picture, and how well found ones are placed."""
    net.eval()
    rows = {}
    for picture in pictures:
        canvas, (scale, left, top) = whole_picture(picture.pixels)
        with torch.no_grad():
            answer = net(torch.from_numpy(canvas).permute(2, 0, 1)[None].float())[0].numpy()
        found = candidates(answer, threshold)
        used = set()
        row = rows.setdefault(picture.kind, {"pictures": 0, "hands": 0, "found": 0, "false": 0, "centre": [],
                                             "size": [], "degrees": [], "side": []})
        row["pictures"] += 1
        for hand in picture.hands:
            x, y, size, angle = geometry.frame_of(hand.joints * scale + [left, top])
            row["hands"] += 1
            near = [(math.hypot(f[1] - x, f[2] - y), i) for i, f in enumerate(found) if i not in used]
            if not near or min(near)[0] > 0.5 * size:
                continue
            distance, i = min(near)
            used.add(i)
            row["found"] += 1
            row["centre"].append(distance / size)
            row["size"].append(abs(math.log(found[i][3] / size)))
            row["degrees"].append(abs(math.degrees((found[i][4] - angle + math.pi) % (2 * math.pi) - math.pi)))
            if math.isfinite(hand.right):
                row["side"].append((found[i][5] > 0.5) == (hand.right > 0.5))
        row["false"] += len(found) - len(used) if picture.complete else 0
    return {kind: {k: (float(np.median(v)) if k != "side" else float(np.mean(v))) if isinstance(v, list) and v else
                   (None if isinstance(v, list) else v) for k, v in row.items()} for kind, row in rows.items()}
