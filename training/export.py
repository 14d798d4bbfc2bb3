"""Writes a trained network as ONNX and checks that OpenCV computes the same from it.

    export.py landmarks CHECKPOINT assets/networks/hand_landmarks.onnx
    export.py finder    CHECKPOINT assets/networks/hand_finder.onnx

An exported network can stand for a checkpoint. Without one ("-") the network has random weights
of a fixed seed.
"""
import argparse
import pathlib
import time
import warnings

import cv2
import numpy as np
import torch

import networks
import restore

TOLERANCE = 2e-3


def load(kind, checkpoint):
    torch.manual_seed(1)
    net = networks.LandmarkNet() if kind == "landmarks" else networks.FinderNet()
    if checkpoint.endswith(".onnx"):
        restore.from_onnx(net, checkpoint, example_for(kind))
    elif checkpoint != "-":
        net.load_state_dict(torch.load(checkpoint, map_location="cpu")["average"])
    else:
        with torch.no_grad():  # The exporter merges equal tensors in a way OpenCV cannot read.
            for tensor in list(net.parameters()) + [b for b in net.buffers() if b.is_floating_point()]:
                tensor += 1e-3 * torch.rand_like(tensor)
    return net.eval()


def example_for(kind):
    size = ((networks.CROP_SIZE, networks.CROP_SIZE) if kind == "landmarks"
            else (networks.FINDER_HEIGHT, networks.FINDER_WIDTH))
    return torch.randint(0, 256, (1, 3) + size).float()


def write(net, kind, path):
    example = example_for(kind)
    names = ["landmarks", "hand"] if kind == "landmarks" else ["hands"]
    pathlib.Path(path).parent.mkdir(parents=True, exist_ok=True)
    warnings.filterwarnings("ignore", message=".*onnx:Resize.*")  # Exact for factors of two, checked below.
    torch.onnx.export(net, example, path, opset_version=10, input_names=["picture"], output_names=names)
    return names, example


def compare(net, path, names, example):
    """Largest difference between PyTorch and OpenCV, and OpenCV's milliseconds on one thread."""
    cv2.setNumThreads(1)
    read = cv2.dnn.readNetFromONNX(str(path))
    worst = 0.0
    for seed in range(5):
        generator = torch.Generator().manual_seed(seed)
        picture = example if seed == 0 else torch.randint(0, 256, example.shape, generator=generator).float()
        read.setInput(picture.numpy())
        theirs = dict(zip(names, read.forward(names)))
        with torch.no_grad():
            ours = net(picture)
        for name, value in zip(names, ours if isinstance(ours, tuple) else (ours,)):
            assert theirs[name].shape == tuple(value.shape), (name, theirs[name].shape, value.shape)
            worst = max(worst, float(np.abs(theirs[name] - value.numpy()).max() / max(1, float(value.abs().max()))))
    times = []
    for _ in range(40):
        start = time.process_time()
        read.setInput(example.numpy())
        read.forward(names)
        times.append(time.process_time() - start)
    return worst, 1000 * float(np.median(times))


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("kind", choices=["landmarks", "finder"])
    parser.add_argument("checkpoint")
    parser.add_argument("path")
    arguments = parser.parse_args()
    net = load(arguments.kind, arguments.checkpoint)
    names, example = write(net, arguments.kind, arguments.path)
    worst, milliseconds = compare(net, arguments.path, names, example)
    parameters = sum(p.numel() for p in net.parameters())
    print(f"{arguments.path}: {parameters / 1e6:.2f} M parameters, "
          f"{pathlib.Path(arguments.path).stat().st_size / 1e6:.2f} MB, "
          f"OpenCV differs by {worst:.1e}, {milliseconds:.1f} ms of CPU")
    if worst > TOLERANCE:
        raise SystemExit("OpenCV computes something else")


if __name__ == "__main__":
    main()
