"use strict";

// The slider shows single frames out of a strip that is loaded when it is first needed; the GIF plays otherwise.
for (const card of document.querySelectorAll(".card")) {
  const stage = card.querySelector(".stage");
  const strip = card.querySelector(".strip");
  const slider = card.querySelector("input");
  const play = card.querySelector(".play");

  function showFrame() {
    if (!strip.style.backgroundImage) strip.style.backgroundImage = `url("${strip.dataset.strip}")`;
    strip.style.backgroundPosition = `0 ${(100 * slider.value) / slider.max}%`;
    stage.classList.add("still");
    play.textContent = "▶";
    play.setAttribute("aria-label", "Play");
  }

  function playOn() {
    stage.classList.remove("still");
    play.textContent = "❚❚";
    play.setAttribute("aria-label", "Stop");
  }

  slider.addEventListener("input", showFrame);
  play.addEventListener("click", () => (stage.classList.contains("still") ? playOn() : showFrame()));
  if (matchMedia("(prefers-reduced-motion: reduce)").matches) showFrame();
}

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
    setTimeout(() => button.classList.remove("copied"), 1500);
  });
}
