// The page's half of the browser backend: owns the canvases that the WebAssembly module knows by number and replays
// its drawing commands. imports.ts hands over what the module asks for, and the host shows screens by binding the
// element's own canvas.
import { Fonts } from './fonts';
import { Painter, type Canvas, type Context, type Pool, type Surface } from './painter';
import { report } from './report';

// The numbers of CanvasOp, in CanvasCommands.h.
const enum Op {
  open = 1,
  close,
  select,
  save,
  restore,
  concat,
  clip,
  fill,
  stroke,
  gradient,
  image,
  text,
  clear,
  beginGroup,
  endGroup,
  string,
  release,
  resize,
  shadowFill,
}

const longestSide = 32767;
const mostPixels = 1 << 28;
const mostPooled = 6;
// Without pixels a spare surface costs next to nothing; those of the bars of a chart at scale 2 are kept.
const mostSpare = 64;
const mostSparePixels = 1 << 19;

function makeCanvas(width: number, height: number, spare?: SpareSurfaces): Surface | null {
  if (!(width >= 1 && height >= 1 && width <= longestSide && height <= longestSide && width * height <= mostPixels)) return null;
  const surface = spare?.take(width, height);
  if (surface) return surface;
  let canvas: Canvas;
  if (typeof OffscreenCanvas === 'function') {
    canvas = new OffscreenCanvas(width, height);
  } else {
    canvas = document.createElement('canvas');
    canvas.width = width;
    canvas.height = height;
  }
  const context = canvas.getContext('2d') as Context | null;
  return context && { canvas, context };
}

// Frees the pixels at once instead of with the next collection.
function drop(surface: Surface): void {
  surface.canvas.width = surface.canvas.height = 0;
}

function pixelsOf({ canvas }: Surface): number {
  return canvas.width * canvas.height;
}

// Surfaces that nobody needs any more, for the next ones: a new context takes time, and so do new pixels. A chart that
// is resized mostly asks for the sizes of before.
class SpareSurfaces {
  private readonly surfaces: Surface[] = []; // the oldest first
  private pixels = 0;

  // A clear one, if there is any. Whoever drew on it has left its context as it was.
  take(width: number, height: number): Surface | undefined {
    const same = this.surfaces.findIndex(({ canvas }) => canvas.width === width && canvas.height === height);
    const empty = this.surfaces.findIndex((surface) => pixelsOf(surface) === 0);
    const [surface] = this.surfaces.splice(same >= 0 ? same : Math.max(empty, 0), 1);
    if (!surface) return undefined;
    this.pixels -= pixelsOf(surface);
    if (same >= 0) {
      surface.context.clearRect(0, 0, width, height);
    } else {
      surface.canvas.width = width;
      surface.canvas.height = height;
    }
    return surface;
  }

  give(surface: Surface): void {
    const isFull = this.surfaces.length >= mostSpare;
    if (isFull || pixelsOf(surface) > mostSparePixels) drop(surface);
    if (isFull) return;
    this.surfaces.push(surface);
    this.pixels += pixelsOf(surface);
    for (const old of this.surfaces) {
      if (this.pixels <= mostSparePixels) return;
      this.pixels -= pixelsOf(old);
      drop(old);
    }
  }
}

class CanvasPool implements Pool {
  private readonly free: Surface[] = [];

  take(width: number, height: number): Surface {
    const index = this.free.findIndex(({ canvas }) => canvas.width >= width && canvas.height >= height && canvas.width * canvas.height <= 4 * width * height + 65536);
    if (index >= 0) {
      const [surface] = this.free.splice(index, 1);
      return surface;
    }
    const made = makeCanvas(width, height) ?? makeCanvas(1, 1);
    if (!made) throw new RangeError(`no canvas of ${width} by ${height} pixels`);
    return made;
  }

  give(surface: Surface): void {
    const { canvas, context } = surface;
    context.clearRect(0, 0, canvas.width, canvas.height);
    this.free.push(surface);
    if (this.free.length > mostPooled) drop(this.free.shift() as Surface);
  }
}

// Pictures are found again by their length and a hash of all of their bytes (32-bit FNV-1a).
function keyOf(bytes: Uint8Array): string {
  let hash = 0x811c9dc5;
  for (const byte of bytes) hash = Math.imul(hash ^ byte, 0x01000193);
  return `${bytes.length}:${hash}`;
}

export class CanvasRuntime {
  private readonly surfaces = new Map<number, Surface>();
  private readonly painters = new Map<number, Painter>();
  private readonly pictures = new Map<string, ImageBitmap>();
  private readonly strings: string[] = [];
  private readonly pool = new CanvasPool();
  private readonly spare = new SpareSurfaces();
  private readonly decoder = new TextDecoder();
  private readonly fonts: Fonts;
  private lastId = 0;
  private painter: Painter | undefined;

  constructor() {
    const measuring = makeCanvas(1, 1);
    if (!measuring) throw new Error('This page cannot draw: it has no 2-D canvas.');
    this.fonts = new Fonts(measuring.context);
  }

  // Decodes a PNG picture for later, as the module's own decoding has to be synchronous. Bytes that are no picture
  // stay unknown.
  async preload(bytes: Uint8Array): Promise<void> {
    try {
      const blob = new Blob([new Uint8Array(bytes)], { type: 'image/png' });
      this.pictures.set(keyOf(bytes), await createImageBitmap(blob, { colorSpaceConversion: 'none' }));
    } catch {
      this.pictures.delete(keyOf(bytes));
    }
  }

  // Makes an element's own canvas a surface and answers its number for CanvasDevice::screenSurface, which also sets its
  // size in pixels. The canvas must not have another kind of context.
  bindScreen(canvas: Canvas): number {
    const context = canvas.getContext('2d') as Context | null;
    if (!context) throw new Error('The canvas has no 2-D context.');
    this.surfaces.set(++this.lastId, { canvas, context });
    return this.lastId;
  }

  unbindScreen(id: number): void {
    this.surfaces.delete(id);
  }

  make(width: number, height: number): number {
    const surface = makeCanvas(width, height, this.spare);
    if (!surface) return 0;
    this.surfaces.set(++this.lastId, surface);
    return this.lastId;
  }

  decode(bytes: Uint8Array): { id: number; width: number; height: number } {
    const picture = this.pictures.get(keyOf(bytes));
    const id = picture ? this.make(picture.width, picture.height) : 0;
    if (!picture || !id) return { id: 0, width: 0, height: 0 };
    this.surfaces.get(id)?.context.drawImage(picture, 0, 0);
    return { id, width: picture.width, height: picture.height };
  }

  // Fills `pixels` with premultiplied R,G,B,A, first row at the top; false when they are not to be had.
  read(id: number, pixels: Uint8Array): boolean {
    const surface = this.surfaces.get(id);
    if (!surface || pixels.length !== 4 * surface.canvas.width * surface.canvas.height) return false;
    const { data } = surface.context.getImageData(0, 0, surface.canvas.width, surface.canvas.height);
    for (let i = 0; i < data.length; i += 4) {
      const alpha = data[i + 3];
      for (let j = i; j < i + 3; ++j) pixels[j] = Math.round((data[j] * alpha) / 255);
      pixels[i + 3] = alpha;
    }
    return true;
  }

  measure(face: number, text: Uint8Array): number {
    return this.fonts.measure(face, this.decoder.decode(text));
  }

  // Carries out a buffer of commands. One that fails is left out and reported; the others are drawn all the same.
  replay(commands: Float64Array, strings: Uint8Array, caught: (error: unknown) => void = () => {}): void {
    let stringsAt = 0;
    for (let i = 0; i < commands.length; ) {
      const op = commands[i];
      const end = i + 2 + commands[i + 1];
      const a = commands.subarray(i + 2, end);
      i = end;
      if (op === Op.string) {
        if (a[0] === 0) this.strings.length = 0;
        this.strings[a[0]] = this.decoder.decode(strings.subarray(stringsAt, stringsAt + a[1]));
        stringsAt += a[1];
        continue;
      }
      try {
        this.perform(op, a);
      } catch (error) {
        caught(error);
        report(error);
      }
    }
  }

  private perform(op: Op, a: Float64Array): void {
    switch (op) {
      case Op.open: {
        const surface = this.surfaces.get(a[1]);
        if (surface) this.painters.set(a[0], new Painter(surface, a[2], this.pool, this.fonts));
        return;
      }
      case Op.close:
        this.painters.get(a[0])?.close();
        this.painters.delete(a[0]);
        return;
      case Op.select:
        this.painter = this.painters.get(a[0]);
        return;
      case Op.release: {
        const surface = this.surfaces.get(a[0]);
        this.surfaces.delete(a[0]);
        if (surface) this.spare.give(surface);
        return;
      }
      case Op.resize: {
        const canvas = this.surfaces.get(a[0])?.canvas;
        if (!canvas) return;
        // Each of the two makes the engine throw the pixels away and get others.
        if (canvas.width !== a[1]) canvas.width = a[1];
        if (canvas.height !== a[2]) canvas.height = a[2];
        return;
      }
    }
    if (this.painter) this.draw(this.painter, op, a);
  }

  private draw(painter: Painter, op: Op, a: Float64Array): void {
    switch (op) {
      case Op.save:
        return painter.save();
      case Op.restore:
        return painter.restore();
      case Op.concat:
        return painter.concat(a);
      case Op.clip:
        return painter.clip(a);
      case Op.fill:
        return painter.fill(a);
      case Op.stroke:
        return painter.stroke(a);
      case Op.gradient:
        return painter.gradient(a);
      case Op.image: {
        const source = this.surfaces.get(a[0]);
        return source && painter.image(a, source);
      }
      case Op.text:
        return painter.text(a, this.strings[a[4]]);
      case Op.clear:
        return painter.clear(a);
      case Op.beginGroup:
        return painter.beginGroup(a);
      case Op.endGroup:
        return painter.endGroup();
      case Op.shadowFill:
        return painter.shadowFill(a);
    }
  }
}
