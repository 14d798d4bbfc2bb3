"""Trains one of the networks; run it again to go on where it stopped.

    train.py landmarks --run DIR --hands DIR --crops 'DIR/crops_*.bin' --rooms 'DIR/rooms_*.bin' --hours 2
    train.py finder    --run DIR --hands DIR --scenes 'DIR/scenes_*.bin' --rooms 'DIR/rooms_*.bin' --hours 2

The run folder keeps `checkpoint.pt` (weights, their moving average, optimiser, counters) and
`log.jsonl`. New files of rendered pictures are noticed while it runs. `--hours` is the length of
the whole training, over all its starts; the learning rate falls towards its end.
"""
import argparse
import copy
import json
import math
import multiprocessing
import os
import pathlib
import queue
import signal
import threading
import time

import cv2
import numpy as np
import torch

import networks

WARM_UP_STEPS = 200
MEASURED_BATCHES = 4  # For the statistics of a network that is trained further.
SAVE_SECONDS = 120
FOLLOW_EVERY = 4     # Steps between moves of the average.
MIRRORED_LATER = 30  # Batches between a batch and its mirror image.


class Landmarks:
    """Pictures and loss of the landmark network."""

    def __init__(self, arguments):
        from evaluate_crops import tuning_crops

        self.net = networks.LandmarkNet()
        self.tuning = tuning_crops(arguments.hands)

    @staticmethod
    def batches(arguments):
        from landmark_data import LandmarkBatches

        return LandmarkBatches(arguments.hands, arguments.crops, arguments.rooms, arguments.mined,
                               arguments.real_share, arguments.seed)

    @staticmethod
    def draw(batches, arguments, progress):
        return batches.batch(arguments.batch, 96 if progress < arguments.small_crops else networks.CROP_SIZE)

    def loss(self, net, batch, device, autocast):
        from landmark_loss import landmark_loss

        with autocast:
            features = net.features(networks.pixels_of(batch[0], device))
        return landmark_loss(net, *features, *[torch.from_numpy(b).to(device) for b in batch[1:]])

    def report(self, net):
        from evaluate_crops import report

        return report(net, self.tuning)


class Finder:
    """Pictures and loss of the finder."""

    def __init__(self, arguments):
        from finder_data import tuning_pictures

        self.net = networks.FinderNet()
        self.tuning = tuning_pictures(arguments.hands)

    @staticmethod
    def batches(arguments):
        from finder_data import FinderBatches

        return FinderBatches(arguments.hands, arguments.scenes, arguments.rooms, arguments.real_share,
                             arguments.seed)

    @staticmethod
    def draw(batches, arguments, progress):
        return batches.batch(arguments.batch)

    def loss(self, net, batch, device, autocast):
        from finder_loss import finder_loss

        with autocast:
            raw = net.raw(networks.pixels_of(batch[0], device))
        return finder_loss(raw, *[torch.from_numpy(b).to(device) for b in batch[1:]])

    def report(self, net):
        from finder_data import report

        return report(net, self.tuning)


def feed(kind, arguments, seed, progress, ready):
    """Draws batches for ever, in a process of its own."""
    for number in (signal.SIGTERM, signal.SIGINT):
        signal.signal(number, signal.SIG_IGN)  # The training stops, and this process with it.
    cv2.setNumThreads(1)
    batches = kind.batches(arguments)
    batches.rng = np.random.default_rng(seed)
    drawn, waiting = 0, []
    while True:
        batch = kind.draw(batches, arguments, progress.value)
        ready.put(batch)
        waiting.append(batches.mirrored(batch))
        if len(waiting) > MIRRORED_LATER:
            ready.put(waiting.pop(int(batches.rng.integers(len(waiting)))))
        drawn += 1
        if drawn % 300 == 0:
            batches.rescan()


def go_on_from(kind, net, arguments):
    """Fills `net`, in place, from an exported network."""
    import export
    import restore

    restore.from_onnx(net, arguments.start, export.example_for(arguments.network))
    batches = kind.batches(arguments)
    drawn = [kind.draw(batches, arguments, 1.0)[0] for _ in range(MEASURED_BATCHES)]
    restore.measure_statistics(net, networks.pixels_of(np.concatenate(drawn), "cpu"))


class Run:
    """The state that survives a stop."""

    def __init__(self, folder, net, rate, device):
        self.folder = pathlib.Path(folder)
        self.folder.mkdir(parents=True, exist_ok=True)
        self.net = net.to(device).to(memory_format=torch.channels_last)
        self.average = copy.deepcopy(self.net).eval()
        matrices = [p for p in net.parameters() if p.ndim > 1]
        others = [p for p in net.parameters() if p.ndim <= 1]
        self.optimiser = torch.optim.AdamW([{"params": matrices, "weight_decay": 0.02},
                                            {"params": others, "weight_decay": 0}], rate, foreach=True)
        self.counters = {"steps": 0, "pictures": 0, "seconds": 0.0, "starts": 0}
        self.path = self.folder / "checkpoint.pt"
        if self.path.exists():
            state = torch.load(self.path, map_location=device)
            self.net.load_state_dict(state["net"])
            self.average.load_state_dict(state["average"])
            self.optimiser.load_state_dict(state["optimiser"])
            self.counters = state["counters"]
        self.counters["starts"] += 1

    def follow(self):
        """Moves the average towards the weights."""
        steps = self.counters["steps"]
        if steps % FOLLOW_EVERY != 0:
            return
        keep = min(0.998, (1 + steps) / (10 + steps)) ** FOLLOW_EVERY
        with torch.no_grad():
            for average, current in zip(self.average.state_dict().values(), self.net.state_dict().values()):
                if average.is_floating_point():
                    average.mul_(keep).add_(current, alpha=1 - keep)
                else:
                    average.copy_(current)

    def save(self):
        state = {"net": self.net.state_dict(), "average": self.average.state_dict(),
                 "optimiser": self.optimiser.state_dict(), "counters": self.counters}
        torch.save(state, str(self.path) + ".new")
        os.replace(str(self.path) + ".new", self.path)

    def log(self, **values):
        values = {"time": time.strftime("%H:%M:%S"), **self.counters, **values}
        with open(self.folder / "log.jsonl", "a") as file:
            file.write(json.dumps(values, default=float) + "\n")


def learning_rate(peak, steps, progress):
    warm = min(1.0, (steps + 1) / WARM_UP_STEPS)
    fall = 0.5 * (1 + math.cos(math.pi * max(0.0, (progress - 0.1) / 0.9)))
    return peak * warm * (0.99 * min(1.0, fall) + 0.01)


def train(arguments):
    torch.set_num_threads(arguments.threads)
    cv2.setNumThreads(1)
    device = "cuda" if torch.cuda.is_available() else "cpu"
    torch.manual_seed(arguments.seed)
    kind = Landmarks if arguments.network == "landmarks" else Finder
    task = kind(arguments)
    if arguments.start and not (pathlib.Path(arguments.run) / "checkpoint.pt").exists():
        go_on_from(kind, task.net, arguments)
    run = Run(arguments.run, task.net, arguments.rate, device)
    stop = threading.Event()
    for number in (signal.SIGTERM, signal.SIGINT):
        signal.signal(number, lambda *_: stop.set())
    total = arguments.hours * 3600
    spawn = multiprocessing.get_context("spawn")
    shared_progress, ready = spawn.Value("d", 0.0), spawn.Queue(6)
    seed = [arguments.seed, run.counters["starts"], run.counters["steps"]]  # Another start draws other pictures.
    feeder = spawn.Process(target=feed, args=(kind, arguments, seed, shared_progress, ready), daemon=True)
    feeder.start()
    progress = lambda: run.counters["seconds"] / total

    last = saved = logged = time.time()
    sums, since = {}, 0
    while not stop.is_set() and progress() < 1:
        shared_progress.value = progress()
        try:
            batch = ready.get(timeout=1)
        except queue.Empty:
            continue
        rate = learning_rate(arguments.rate, run.counters["steps"], progress())
        for group in run.optimiser.param_groups:
            group["lr"] = rate
        run.net.train()
        loss, parts = task.loss(run.net, batch, device, torch.autocast(device, dtype=torch.bfloat16))
        run.optimiser.zero_grad(set_to_none=True)
        loss.backward()
        torch.nn.utils.clip_grad_norm_(run.net.parameters(), 5.0)
        run.optimiser.step()
        now = time.time()
        run.counters["seconds"] += now - last
        last = now
        run.counters["steps"] += 1
        run.counters["pictures"] += len(batch[0])
        run.follow()
        since += 1
        for name, value in parts.items():
            sums[name] = sums.get(name, 0.0) + float(value)
        if now - saved > SAVE_SECONDS:
            run.save()
            saved = now
        if since == 500:
            table = task.report(run.average) if run.counters["steps"] % 2500 == 0 else None
            run.log(progress=progress(), rate=rate, per_second=since * arguments.batch / (time.time() - logged),
                    tuning=table, **{k: v / since for k, v in sums.items()})
            sums, since, logged = {}, 0, time.time()
            last = time.time()
    stop.set()
    feeder.kill()  # It does not hear milder signals.
    run.save()
    run.log(stopped=True, tuning=task.report(run.average))


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("network", choices=["landmarks", "finder"])
    parser.add_argument("--run", required=True, help="folder for checkpoint and log")
    parser.add_argument("--hands", required=True, help="folder of the labelled real hands")
    parser.add_argument("--crops", default="", help="pattern of the rendered crops")
    parser.add_argument("--scenes", default="", help="pattern of the rendered scenes")
    parser.add_argument("--rooms", default="", help="pattern of the rendered rooms")
    parser.add_argument("--mined", default="", help="what mine.py collected")
    parser.add_argument("--hours", type=float, required=True)
    parser.add_argument("--from", dest="start", default="", help="an exported network that is trained further")
    parser.add_argument("--small-crops", type=float, default=0.75,
                        help="for this share of the training crops of 96 pixels, which cost half")
    parser.add_argument("--real-share", type=float, default=0.4)
    parser.add_argument("--batch", type=int, default=64)
    parser.add_argument("--rate", type=float, default=2.5e-3)
    parser.add_argument("--threads", type=int, default=1)
    parser.add_argument("--seed", type=int, default=1)
    train(parser.parse_args())


if __name__ == "__main__":
    main()
