// Binds the page's controls to the studio.
import astronaut from "../../../Images/astronaut.pgm";
import camera from "../../../Images/camera.pgm";
import coffee from "../../../Images/coffee.pgm";
import { wavelets } from "marovia";
import { controls } from "./controls";
import { bindArrivals } from "./files";
import type { Mode } from "./stage";
import { Studio } from "./studio";

const studio = new Studio();
const { stage } = studio;
const started = studio.start();

const open = (blob: Blob, name: string) => started.then(() => studio.open(blob, name));

function bindSamples(): void {
  const samples: Record<string, string> = { Camera: camera, Astronaut: astronaut, Coffee: coffee };
  const show = async (title: string) =>
    open(await (await fetch(samples[title]!)).blob(), `${title.toLowerCase()}.pgm`);
  for (const title of Object.keys(samples)) {
    controls.sample.add(new Option(title));
    const button = document.createElement("button");
    button.textContent = title;
    button.addEventListener("click", () => show(title));
    controls.samples.append(button);
  }
  controls.sample.addEventListener("change", () => {
    if (controls.sample.value) void show(controls.sample.value);
    controls.sample.value = "";
  });
}

function bindOpening(): void {
  controls.choose.addEventListener("click", () => controls.file.click());
  controls.file.addEventListener("change", () => {
    const file = controls.file.files?.[0];
    if (file) void open(file, file.name);
    controls.file.value = "";
  });
  bindArrivals(controls.stage, (file) => void open(file, file.name));
}

function bindLooking(): void {
  controls.mode.addEventListener("change", (event) => {
    const before = stage.mode;
    stage.mode = (event.target as HTMLInputElement).value as Mode;
    controls.gainRow.hidden = stage.mode !== "difference";
    controls.wipe.hidden = stage.mode !== "wipe";
    if ([before, stage.mode].includes("difference")) void studio.lookAgain();
    stage.redraw();
  });
  controls.gain.addEventListener("input", () => void studio.lookAgain());
  const zoomTo = (scale: number) => {
    stage.view.zoomTo(scale);
    stage.redraw();
  };
  controls.zoomIn.addEventListener("click", () => zoomTo(1.5 * stage.view.scale));
  controls.zoomOut.addEventListener("click", () => zoomTo(stage.view.scale / 1.5));
  controls.full.addEventListener("click", () => zoomTo(1));
  stage.onZoom = (scale) => (controls.zoom.textContent = `${(100 * scale).toFixed(0)} %`);
  controls.fit.addEventListener("click", () => {
    stage.view.fit();
    stage.redraw();
  });
}

function bindHolding(): void {
  const hold = (held: boolean) => () => {
    stage.held = held && studio.source;
    stage.redraw();
  };
  controls.hold.addEventListener("pointerdown", hold(true));
  for (const end of ["pointerup", "pointerleave", "pointercancel"]) controls.hold.addEventListener(end, hold(false));
  const isTyping = (event: Event) => (event.target as HTMLElement).matches("input[type=number], select");
  const isKey = (event: KeyboardEvent) =>
    event.key.toLowerCase() === "s" || (event.target === controls.hold && event.key === " ");
  window.addEventListener("keydown", (event) => {
    if (isKey(event) && !isTyping(event) && !event.ctrlKey && !event.metaKey) hold(true)();
  });
  window.addEventListener("keyup", (event) => {
    if (isKey(event)) hold(false)();
  });
}

function bindWipe(): void {
  const move = (part: number) => {
    stage.wipe = Math.min(1, Math.max(0, part));
    controls.wipe.style.left = `${100 * stage.wipe}%`;
    controls.wipe.setAttribute("aria-valuenow", (100 * stage.wipe).toFixed(0));
    stage.redraw();
  };
  move(0.5);
  controls.wipe.addEventListener("pointerdown", (event) => controls.wipe.setPointerCapture(event.pointerId));
  controls.wipe.addEventListener("pointermove", (event) => {
    if (!controls.wipe.hasPointerCapture(event.pointerId)) return;
    const { left, width } = controls.stage.getBoundingClientRect();
    move((event.clientX - left) / width);
  });
  controls.wipe.addEventListener("keydown", (event) => {
    const steps: Record<string, number> = { ArrowLeft: -0.02, ArrowRight: 0.02, Home: -1, End: 1 };
    if (event.key in steps) move(stage.wipe + steps[event.key]!);
  });
}

function bindRate(): void {
  controls.rate.addEventListener("input", () => void studio.look({ part: Number(controls.rate.value) / 1000 }));
  const aim = () => void studio.lookFor(Number(controls.target.value), controls.unit.value);
  controls.target.addEventListener("change", aim);
  controls.unit.addEventListener("change", aim);
}

function bindCoding(): void {
  for (const wavelet of wavelets) controls.wavelet.add(new Option(wavelet));
  for (const choice of [controls.kind, controls.wavelet, controls.levels, controls.share])
    choice.addEventListener("change", () => void studio.recode());
}

function bindRegion(): void {
  controls.draw.addEventListener("click", () => {
    stage.drawing = !stage.drawing;
    controls.draw.setAttribute("aria-pressed", String(stage.drawing));
    controls.stage.classList.toggle("drawing", stage.drawing);
  });
  controls.clear.addEventListener("click", () => {
    stage.region = undefined;
    void studio.recode();
  });
  for (const field of Object.values(controls.sides))
    field.addEventListener("change", () => {
      const { row1, col1, row2, col2 } = controls.sides;
      stage.region = { row1: +row1.value, col1: +col1.value, row2: +row2.value, col2: +col2.value };
      void studio.recode();
    });
}

function bindSaving(): void {
  controls.saveFile.addEventListener("click", () => void studio.saveFile());
  controls.savePng.addEventListener("click", () => void studio.savePng());
  controls.savePgm.addEventListener("click", () => void studio.savePgm());
}

bindSamples();
bindOpening();
bindLooking();
bindHolding();
bindWipe();
bindRate();
bindCoding();
bindRegion();
bindSaving();
if (import.meta.env.PROD) void navigator.serviceWorker?.register("./offline.js");
