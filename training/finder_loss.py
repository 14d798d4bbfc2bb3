"""What the finder is asked to get right."""
import torch
import torch.nn.functional as F


def finder_loss(raw, target, weight):
    """raw (B, 7, h, w) from FinderNet.raw; target (B, 8, h, w): heat, offsets (2), log size, cos, sin,
    right (nan unknown), share of the cell in the box losses; weight (B, h, w) of the score's loss."""
    raw = raw.float()
    heat = target[:, 0]
    probability = torch.sigmoid(raw[:, 0]).clamp(1e-4, 1 - 1e-4)
    peak = (heat > 0.999).float()
    miss = peak * (1 - probability) ** 2 * torch.log(probability)
    false = (1 - peak) * (1 - heat) ** 4 * probability ** 2 * torch.log(1 - probability)
    peaks = peak.sum() + 1
    share = target[:, 7]
    total = share.sum() + 1
    mean = lambda loss: (loss * share).sum() / total
    known = torch.isfinite(target[:, 6]).float() * share
    side = F.binary_cross_entropy_with_logits(raw[:, 6], torch.nan_to_num(target[:, 6]), reduction="none")
    parts = {"heat": -((miss + false) * weight).sum() / peaks,
             "offset": mean((raw[:, 1:3] - target[:, 1:3]).abs().sum(1)),
             "size": mean((raw[:, 3] - target[:, 3]).abs()),
             "angle": mean((raw[:, 4:6] - target[:, 4:6]).abs().sum(1)),
             "right": (side * known).sum() / (known.sum() + 1)}
    loss = parts["heat"] + 0.5 * parts["offset"] + 0.7 * parts["size"] + 0.5 * parts["angle"] + 0.3 * parts["right"]
    return loss, parts
