// Turns pointer events on a canvas into the three mouse events that a chart knows. Coordinates are CSS pixels within
// the canvas before any transform.

export interface PointerListener {
  entered(): void;
  moved(x: number, y: number): void;
  down(x: number, y: number): void;
  exited(): void;
}

// How much the CSS property zoom, of the element and around it, magnifies it.
export function cssZoom(element: Element): number {
  return (element as Element & { currentCSSZoom?: number }).currentCSSZoom ?? 1;
}

export class PointerTracker {
  private readonly canvas: HTMLCanvasElement;
  private readonly listener: PointerListener;
  private listening: AbortController | undefined;
  private isOver = false;
  // Set while a finger has left something hovered, until the next touch elsewhere.
  private lingering: AbortController | undefined;

  constructor(canvas: HTMLCanvasElement, listener: PointerListener) {
    this.canvas = canvas;
    this.listener = listener;
  }

  start(): void {
    this.listening = new AbortController();
    const { signal } = this.listening;
    const listen = (type: string, handler: (event: PointerEvent) => void) =>
      this.canvas.addEventListener(type, handler as EventListener, { signal });
    listen('pointerenter', () => this.listener.entered());
    listen('pointermove', (event) => this.moved(event));
    listen('pointerdown', (event) => this.down(event));
    listen('pointerleave', (event) => this.left(event));
    listen('pointercancel', () => this.exited());
    // A page that is left takes no further part in what the pointer does, and may come back as it was.
    addEventListener('pagehide', () => this.isOver && this.exited(), { signal });
  }

  stop(): void {
    this.listening?.abort();
    this.lingering?.abort();
    this.listening = this.lingering = undefined;
  }

  private moved(event: PointerEvent): void {
    if (!event.isPrimary) return;
    this.isOver = true;
    this.listener.moved(...this.position(event));
  }

  // Offsets disregard transforms, as they should; engines differ in whether they also disregard zoom, which shows in how
  // they compare with the distance from the box on the screen.
  private position(event: PointerEvent): [number, number] {
    const zoom = cssZoom(this.canvas);
    if (zoom === 1) return [event.offsetX, event.offsetY];
    const isZoomed = Math.abs(event.clientX - this.canvas.getBoundingClientRect().left - event.offsetX) < 1;
    return isZoomed ? [event.offsetX / zoom, event.offsetY / zoom] : [event.offsetX, event.offsetY];
  }

  private down(event: PointerEvent): void {
    if (!event.isPrimary || event.button !== 0) return;
    // A finger is bound to where it came down; a chart wants to hear when it leaves.
    if (this.canvas.hasPointerCapture(event.pointerId)) this.canvas.releasePointerCapture(event.pointerId);
    if (event.pointerType !== 'mouse') this.moved(event);
    this.listener.down(...this.position(event));
  }

  private left(event: PointerEvent): void {
    if (!event.isPrimary) return;
    const [x, y] = this.position(event);
    const isInside = x >= 0 && y >= 0 && x < this.canvas.clientWidth && y < this.canvas.clientHeight;
    if (event.pointerType === 'touch' && isInside) this.linger();
    else this.exited();
  }

  private exited(): void {
    this.lingering?.abort();
    this.lingering = undefined;
    this.isOver = false;
    this.listener.exited();
  }

  // A lifted finger leaves its slice hovered, as there would be no time to read the label otherwise.
  private linger(): void {
    this.lingering?.abort();
    this.lingering = new AbortController();
    const elsewhere = (event: Event) => {
      if (!event.composedPath().includes(this.canvas)) this.exited();
    };
    this.canvas.ownerDocument.addEventListener('pointerdown', elsewhere, { capture: true, signal: this.lingering.signal });
  }
}
