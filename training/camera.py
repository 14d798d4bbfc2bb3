"""What cameras, light and compression do to a picture; all in place of real variety."""
import cv2
import numpy as np

_NOISE = np.random.default_rng(0).normal(0, 1, (512, 512, 3)).astype(np.float32)


def blur(picture, rng, scale):
    """Out of focus, or moved; `scale`: how large the picture is against the one it is to become."""
    kind = rng.random()
    if kind < 0.55:
        return cv2.GaussianBlur(picture, (0, 0), max(0.4, scale * rng.uniform(0.4, 1.8)))
    length = max(3, round(scale * rng.integers(3, 12)))
    kernel = np.zeros((length, length), np.float32)
    angle = rng.uniform(0, np.pi)
    middle, reach = (length - 1) / 2, (length - 1) / 2
    cv2.line(kernel, (round(middle - reach * np.cos(angle)), round(middle - reach * np.sin(angle))),
             (round(middle + reach * np.cos(angle)), round(middle + reach * np.sin(angle))), 1.0)
    return cv2.filter2D(picture, -1, kernel / kernel.sum())


def light(picture, rng):
    """Gamma, contrast, brightness, white balance and saturation in one matrix and one table."""
    saturation = 0.0 if rng.random() < 0.03 else rng.uniform(0.55, 1.35)
    grey = np.array([0.114, 0.587, 0.299], np.float32) * (1 - saturation)
    picture = cv2.transform(picture, np.eye(3, dtype=np.float32) * saturation + grey)
    x = np.arange(256) / 255
    strong = 1.8 if rng.random() < 0.2 else 1.0
    gamma = np.exp(rng.normal(0, 0.25 * strong))
    contrast, shift = np.exp(rng.normal(0, 0.15 * strong)), rng.normal(0, 0.06 * strong)
    gains = np.exp(rng.normal(0, (0.09, 0.03, 0.08)))
    curve = ((x ** gamma)[:, None] - 0.5) * contrast + 0.5 + shift
    table = np.clip(curve * gains * 255, 0, 255).astype(np.uint8)
    return cv2.LUT(picture, table[:, None, :])


def shade(picture, rng):
    """A slow change of brightness across the picture."""
    height, width = picture.shape[:2]
    corners = np.exp(rng.normal(0, 0.35, (2, 2))).astype(np.float32)
    ramp = cv2.resize(corners, (width, height), interpolation=cv2.INTER_LINEAR)
    return cv2.multiply(picture, cv2.merge([ramp] * 3), dtype=cv2.CV_8U)


def noise(picture, rng):
    height, width = picture.shape[:2]
    y, x = rng.integers(0, 512 - height), rng.integers(0, 512 - width)
    strength = abs(rng.normal(0, 7)) + 1
    return cv2.scaleAdd(_NOISE[y:y + height, x:x + width], strength, picture.astype(np.float32)).clip(0, 255).astype(np.uint8)


def compress(picture, rng):
    data = cv2.imencode(".jpg", picture, [cv2.IMWRITE_JPEG_QUALITY, int(rng.integers(18, 90))])[1]
    return cv2.imdecode(data, cv2.IMREAD_COLOR)


def develop(picture, rng, least_resolution=0.3):
    """A random selection of all of the above. Of the pictures of coarse cameras, and of far hands, one
    pixel's noise and compression become several pixels': they are developed small and enlarged."""
    height, width = picture.shape[:2]
    scale = rng.uniform(least_resolution, 0.85) if rng.random() < 0.4 else 1
    if scale < 1:
        picture = cv2.resize(picture, None, fx=scale, fy=scale, interpolation=cv2.INTER_AREA)
    if rng.random() < 0.25:
        picture = shade(picture, rng)
    if rng.random() < 0.9:
        picture = light(picture, rng)
    if rng.random() < 0.25:
        picture = blur(picture, rng, scale)
    if rng.random() < 0.28:
        picture = noise(picture, rng)
    if rng.random() < 0.25:
        picture = compress(picture, rng)
    return cv2.resize(picture, (width, height), interpolation=cv2.INTER_LINEAR) if scale < 1 else picture
