"""A thousand transitions over a Dask cluster: stateless calls under an engine that exists.

many.py FOLDER [--pairs N] [--scheduler ADDRESS]: without an address, on a local cluster of two processes.
"""

import argparse
from pathlib import Path

import numpy as np
from dask.distributed import Client, LocalCluster, as_completed

import dibkit

SIZE = (96, 64)


def picture(seed: int) -> dibkit.Image:
    """One of the pictures: here a sample in changed colours; in real life a file that all machines can read."""
    image = dibkit.lake(SIZE) if seed % 2 else dibkit.dahlia(SIZE)
    turn = np.random.default_rng(seed).permutation(3)
    image.rgb[:] = image.rgb[..., turn].copy()
    return image


def make(number: int) -> tuple[int, bytes]:
    """One transition; all that goes over the network is its number, and the file that it becomes."""
    effects = dibkit.effects()
    effect = effects[number % len(effects)]
    animation = dibkit.transition(picture(number), picture(number + 1), effect.name, frames=8, easing="ease-in-out")
    return number, animation.encode()


def main() -> None:
    parser = argparse.ArgumentParser()
    parser.add_argument("folder", type=Path)
    parser.add_argument("--pairs", type=int, default=1000)
    parser.add_argument("--scheduler")
    arguments = parser.parse_args()
    folder = arguments.folder / "many"
    folder.mkdir(parents=True, exist_ok=True)
    cluster = arguments.scheduler or LocalCluster(
        n_workers=2, threads_per_worker=1, dashboard_address=None, host="127.0.0.1"
    )
    with Client(cluster) as client:
        size = 0
        for future in as_completed(client.map(make, range(arguments.pairs), pure=False)):
            number, gif = future.result()
            (folder / f"{number:04}.gif").write_bytes(gif)
            size += len(gif)
            future.release()
        print(f"{arguments.pairs} transitions, {size:,} bytes, by {len(client.scheduler_info()['workers'])} processes")
    if not arguments.scheduler:
        cluster.close()


if __name__ == "__main__":
    main()
