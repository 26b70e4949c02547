"""Animations and GIF files: the same bytes as the command line, progress, threads, pickles."""

import io
import os
import pickle
import threading
import time

import numpy as np
import PIL.Image
import pytest
from conftest import shown

import dibkit

SIZE = (64, 48)


@pytest.fixture(scope="module")
def files(tmp_path_factory):
    folder = tmp_path_factory.mktemp("pictures")
    for name, picture in (("a", dibkit.lake(SIZE)), ("b", dibkit.dahlia(SIZE)), ("c", dibkit.dahlia((30, 60)))):
        picture.save(folder / f"{name}.png")
    return folder


@pytest.mark.parametrize(
    "options, arguments",
    [
        ([], {}),
        (
            ["--effect", "spread", "--style", "circle", "--easing", "ease-out", "--frames", "9"],
            {"effect": "spread", "style": "circle", "easing": "ease-out", "frames": 9},
        ),
        (["--effect", "mosaic", "--back", "--reverse", "--once"], {"effect": "mosaic", "back": True, "reverse": True, "loop": None}),
        (["--size", "40x30", "--fit", "cover", "--matte", "#ff0000", "--delay", "33", "--hold", "500", "--loop", "3"],
         {"size": (40, 30), "fit": "cover", "matte": "#ff0000", "delay": 33, "hold": 500, "loop": 3}),
    ],
)
def test_a_transition_has_the_bytes_of_the_command_line(program, files, options, arguments):
    effect = arguments.pop("effect", "fade")
    made = dibkit.transition(files / "a.png", files / "b.png", effect, more=[files / "c.png"], **arguments)
    expected = program("transition", files / "a.png", files / "b.png", files / "c.png", *options, "-o", "-")
    assert made.encode() == expected


def test_ripple_and_optimize_have_the_bytes_of_the_command_line(program, files, tmp_path):
    gif = program("ripple", files / "a.png", "--frames", "6", "--drops", "3", "--seed", "7", "-o", "-")
    ripple = dibkit.ripple(dibkit.Image.open(files / "a.png"), frames=6, drops=3, seed=7)
    assert ripple.encode() == gif
    # Frames in any order are those of the animation.
    assert ripple[4] == ripple[4] == ripple[2:6][2]
    assert dibkit.Animation.open(gif).comment == "dibkit ripple --drops 3 --seed 7"
    whole = dibkit.transition(files / "a.png", files / "b.png", frames=5).encode(optimize=False)
    (tmp_path / "whole.gif").write_bytes(whole)
    optimized = dibkit.optimize(tmp_path / "whole.gif")
    assert optimized == program("optimize", tmp_path / "whole.gif", "-o", "-") and len(optimized) < len(whole)


def test_saving_takes_no_longer_than_the_command(program, tmp_path):
    for name, picture in (("a", dibkit.lake((240, 180))), ("b", dibkit.dahlia((240, 180)))):
        picture.save(tmp_path / f"{name}.png")
    arguments = (tmp_path / "a.png", tmp_path / "b.png")
    made = dibkit.transition(*arguments, "fade", frames=8)
    shares = []
    for _ in range(3):
        start = time.perf_counter()
        made.save(tmp_path / "python.gif")
        middle = time.perf_counter()
        program("transition", *arguments, "--frames", "8", "--force", "-o", tmp_path / "command.gif")
        shares.append((middle - start) / (time.perf_counter() - middle))
    assert (tmp_path / "python.gif").read_bytes() == (tmp_path / "command.gif").read_bytes()
    assert min(shares) < 1.1, shares


@pytest.mark.parametrize("ways", [{}, {"optimize": False}, {"palette": "frame"}])
def test_frames_delays_loop_and_comment_come_back(ways, tmp_path):
    rng = np.random.default_rng(5)
    frames = []
    for _ in range(3):
        image = dibkit.Image(8, 6)
        image.rgb[:] = rng.integers(0, 4, (6, 8, 3)) * 80
        image.alpha[:] = rng.integers(0, 2, (6, 8)) * 255
        image.rgb[image.alpha == 0] = 0
        frames.append(image)
    made = dibkit.Animation(frames, [20, 35, 125], loop=7, comment="für alle")
    made.save(tmp_path / "x.gif", **ways)
    for back in (dibkit.Animation.open(tmp_path / "x.gif"), pickle.loads(pickle.dumps(made))):
        # 35 ms are 3.5 hundredths: the odd half goes to the next frame.
        assert back.delays == (20, 40, 120) and back.duration == 180
        assert (back.loop, back.comment, back.size, len(back)) == (7, "für alle", (8, 6), 3)
        assert [shown(frame) for frame in back] == [shown(frame) for frame in frames]
    with PIL.Image.open(tmp_path / "x.gif") as other:
        assert other.n_frames == 3
    assert dibkit.info(tmp_path / "x.gif")["transparency"] == "transparent"


def test_progress_is_told_and_cancels(tmp_path):
    made = dibkit.transition(dibkit.lake(SIZE), dibkit.dahlia(SIZE), frames=10)
    told = []
    made.save(tmp_path / "x.gif", progress=told.append)
    assert told == sorted(told) and told[-1] == pytest.approx(1)
    before = (tmp_path / "x.gif").read_bytes()
    with pytest.raises(dibkit.Cancelled):
        made.save(tmp_path / "x.gif", optimize=False, progress=lambda share: share < 0.5)
    with pytest.raises(ZeroDivisionError):
        made.save(tmp_path / "x.gif", progress=lambda share: 1 / 0)
    assert (tmp_path / "x.gif").read_bytes() == before and os.listdir(tmp_path) == ["x.gif"]
    lines = []
    with pytest.raises(dibkit.Cancelled):
        dibkit.to_24_bits(dibkit.Image(4, 200), progress=lambda share: lines.append(share) or len(lines) < 20)
    assert len(lines) == 20


def test_threads_run_side_by_side_and_give_the_same_bytes():
    a, b = dibkit.lake((200, 150)), dibkit.dahlia((200, 150))
    # Three effects that draw from one generator, and one that does not.
    names = ["mosaic", "fade", "mosaic", "fade"]
    alone = {name: dibkit.transition(a, b, name, frames=6).encode() for name in set(names)}
    results = [b""] * len(names)

    def work(place, name):
        results[place] = dibkit.transition(a, b, name, frames=6).encode(progress=lambda share: None)

    threads = [threading.Thread(target=work, args=item) for item in enumerate(names)]
    for thread in threads:
        thread.start()
    for thread in threads:
        thread.join()
    assert results == [alone[name] for name in names]


def test_the_interpreter_runs_while_pixels_are_worked_on():
    image = dibkit.lake((300, 300))
    done = threading.Event()
    counted = 0

    def work():
        dibkit.median(image, 15)
        done.set()

    thread = threading.Thread(target=work)
    thread.start()
    while not done.is_set():
        counted += 1
        time.sleep(0.001)
    thread.join()
    # With the lock held, this thread would not have woken before the end.
    assert counted > 1


def test_pictures_of_all_kinds(files, tmp_path):
    picture = dibkit.Image.open(files / "a.png")
    kinds = [picture, str(files / "a.png"), files / "a.png", (files / "a.png").read_bytes(), picture.to_pil()]
    with open(files / "a.png", "rb") as file:
        assert all(dibkit.as_image(kind) == picture for kind in [*kinds, file])
    buffer = io.BytesIO()
    dibkit.Animation(kinds[:2]).save(buffer)
    assert buffer.getvalue().startswith(b"GIF89a")
    assert dibkit.transition(picture, picture, easing=lambda time: time**2, frames=3).size == SIZE
