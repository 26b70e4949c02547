"use strict";

const main = document.querySelector("main");
const delays = main.dataset.delays.split(" ").map(Number);
const columns = Number(main.dataset.columns);

// Plays the frames of one card. They are on one image, the sheet, which is loaded while the card is near the window.
class Player {
  #canvas;
  #slider;
  #button;
  #sheet = null;
  #frame = 0;
  #due = 0;
  playing = true;

  constructor(card) {
    this.#canvas = card.querySelector("canvas");
    this.#slider = card.querySelector("input");
    this.#button = card.querySelector(".play");
    this.#slider.value = 0; // browsers restore the old value
    this.#slider.addEventListener("input", () => {
      this.play(false);
      this.#show(Number(this.#slider.value));
    });
    this.#button.addEventListener("click", () => this.play(!this.playing));
  }

  play(on) {
    this.playing = on;
    this.#due = performance.now() + delays[this.#frame];
    this.#button.textContent = on ? "❚❚" : "▶";
    this.#button.setAttribute("aria-label", `${on ? "Stop" : "Play"} ${this.#canvas.getAttribute("aria-label")}`);
  }

  come() {
    this.#sheet = new Image();
    this.#sheet.addEventListener("load", () => this.#show(this.#frame));
    this.#sheet.src = this.#canvas.dataset.sheet;
  }

  go() {
    this.#sheet = null;
  }

  advance(now) {
    if (!this.playing || !this.#sheet?.complete || now < this.#due) return;
    // After a pause, as of a hidden tab, the animation goes on with the next frame.
    if (now - this.#due > 1000) this.#due = now;
    let frame = this.#frame;
    do {
      frame = (frame + 1) % delays.length;
      this.#due += delays[frame];
    } while (now >= this.#due);
    this.#show(frame);
  }

  #show(frame) {
    this.#frame = frame;
    this.#slider.value = frame;
    if (!this.#sheet?.complete) return;
    const { width, height } = this.#canvas;
    const x = (frame % columns) * width;
    const y = Math.floor(frame / columns) * height;
    const context = this.#canvas.getContext("2d");
    context.clearRect(0, 0, width, height);
    context.drawImage(this.#sheet, x, y, width, height, 0, 0, width, height);
  }
}

const players = new Map();
const near = new Set();
for (const card of document.querySelectorAll(".card")) players.set(card, new Player(card));

const watcher = new IntersectionObserver(
  (changes) => {
    for (const { target, isIntersecting } of changes) {
      const player = players.get(target);
      if (isIntersecting) {
        near.add(player);
        player.come();
      } else if (near.delete(player)) {
        player.go();
      }
    }
  },
  { rootMargin: "50%" },
);
for (const card of players.keys()) watcher.observe(card);

function tick(now) {
  for (const player of near) player.advance(now);
  requestAnimationFrame(tick);
}
requestAnimationFrame(tick);

const all = document.querySelector(".all");

function playAll(on) {
  for (const player of players.values()) player.play(on);
  all.textContent = on ? "Stop all" : "Play all";
}

all.addEventListener("click", () => playAll(all.textContent === "Play all"));
if (matchMedia("(prefers-reduced-motion: reduce)").matches) playAll(false);

// A frame is sharp where each of its pixels is the same whole number of the screen's. Where that would leave much of the
// card empty, it fills the card instead.
function fit() {
  const ratio = devicePixelRatio;
  const { width } = document.querySelector("canvas");
  const room = document.querySelector(".stage").getBoundingClientRect().width * ratio;
  const times = Math.floor(room / width);
  const sharp = times * width >= (room * 2) / 3;
  main.style.setProperty("--shown", sharp ? `${(times * width) / ratio}px` : "100%");
  main.style.setProperty("--scaling", sharp ? "pixelated" : "auto");
}
addEventListener("resize", fit);
fit();

// Pages opened from a disk may have no clipboard to write to; a selected text area can still be copied.
function copyBySelection(text) {
  const area = document.createElement("textarea");
  area.value = text;
  area.style.position = "fixed";
  document.body.append(area);
  area.select();
  document.execCommand("copy");
  area.remove();
}

for (const button of document.querySelectorAll(".copy")) {
  button.addEventListener("click", async () => {
    const text = button.querySelector("code").textContent;
    try {
      await navigator.clipboard.writeText(text);
    } catch {
      copyBySelection(text);
    }
    button.classList.add("copied");
    document.querySelector("[role=status]").textContent = "Copied";
    setTimeout(() => {
      button.classList.remove("copied");
      document.querySelector("[role=status]").textContent = "";
    }, 1500);
  });
}
