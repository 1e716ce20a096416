// Mouse, fingers, wheel and keys over the canvas, turned into movements of the view.
import type { View } from "./view";

interface Spot {
  x: number;
  y: number;
}

export interface Gestures {
  view: View;
  /** Whether a drag draws instead of moving the picture. */
  draws: () => boolean;
  onDraw: (from: Spot, to: Spot, done: boolean) => void;
  onHover: (at: Spot | undefined) => void;
  onChange: () => void;
}

const spread = ([one, other]: Spot[]) => Math.hypot(one!.x - other!.x, one!.y - other!.y);
const middle = ([one, other]: Spot[]) => ({ x: (one!.x + other!.x) / 2, y: (one!.y + other!.y) / 2 });

export function bindGestures(canvas: HTMLCanvasElement, { view, draws, onDraw, onHover, onChange }: Gestures): void {
  const fingers = new Map<number, Spot>();
  let drawnFrom: Spot | undefined;

  const spotOf = (event: MouseEvent): Spot => {
    const { left, top } = canvas.getBoundingClientRect();
    return { x: (event.clientX - left) * devicePixelRatio, y: (event.clientY - top) * devicePixelRatio };
  };
  const inImage = ({ x, y }: Spot) => view.toImage(x, y);

  function pinch(before: Spot[], after: Spot[]): void {
    const [from, to] = [middle(before), middle(after)];
    view.panBy(to.x - from.x, to.y - from.y);
    view.zoomTo((view.scale * spread(after)) / Math.max(1, spread(before)), to.x, to.y);
  }

  canvas.addEventListener("pointerdown", (event) => {
    if (event.button !== 0) return;
    canvas.setPointerCapture(event.pointerId);
    fingers.set(event.pointerId, spotOf(event));
    drawnFrom = draws() && fingers.size === 1 ? inImage(spotOf(event)) : undefined;
  });
  canvas.addEventListener("pointermove", (event) => {
    const now = spotOf(event);
    onHover(inImage(now));
    const last = fingers.get(event.pointerId);
    if (!last) return;
    if (drawnFrom) return onDraw(drawnFrom, inImage(now), false);
    const before = [...fingers.values()];
    fingers.set(event.pointerId, now);
    if (fingers.size === 2) pinch(before, [...fingers.values()]);
    else view.panBy(now.x - last.x, now.y - last.y);
    onChange();
  });
  const end = (event: PointerEvent) => {
    fingers.delete(event.pointerId);
    if (drawnFrom) onDraw(drawnFrom, inImage(spotOf(event)), true);
    drawnFrom = undefined;
  };
  canvas.addEventListener("pointerup", end);
  canvas.addEventListener("pointercancel", end);
  canvas.addEventListener("pointerleave", () => onHover(undefined));

  canvas.addEventListener(
    "wheel",
    (event) => {
      event.preventDefault();
      const { x, y } = spotOf(event);
      // A touchpad's pinch comes as a wheel with the control key, in small steps.
      view.zoomTo(view.scale * Math.exp(-event.deltaY * (event.ctrlKey ? 0.01 : 0.0015)), x, y);
      onChange();
    },
    { passive: false },
  );

  const step = 48;
  const keys: Record<string, () => void> = {
    ArrowLeft: () => view.panBy(step, 0),
    ArrowRight: () => view.panBy(-step, 0),
    ArrowUp: () => view.panBy(0, step),
    ArrowDown: () => view.panBy(0, -step),
    "+": () => view.zoomTo(view.scale * 1.25),
    "=": () => view.zoomTo(view.scale * 1.25),
    "-": () => view.zoomTo(view.scale / 1.25),
    "0": () => view.fit(),
    "1": () => view.zoomTo(1),
  };
  canvas.addEventListener("keydown", (event) => {
    const act = event.ctrlKey || event.metaKey ? undefined : keys[event.key];
    if (!act) return;
    event.preventDefault();
    act();
    onChange();
  });
}
