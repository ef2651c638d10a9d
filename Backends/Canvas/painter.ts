// Carries out the drawing commands of one context on its surface, and on the groups opened over it.
import { cssFont, prepareForText, type Fonts } from './fonts';

export type Canvas = OffscreenCanvas | HTMLCanvasElement;
export type Context = CanvasRenderingContext2D | OffscreenCanvasRenderingContext2D;
export interface Surface {
  canvas: Canvas;
  context: Context;
}

// Canvases for groups, handed out and taken back.
export interface Pool {
  // At least that large; smaller when there is no memory for it.
  take(width: number, height: number): Surface;
  give(surface: Surface): void;
}

type Numbers = ArrayLike<number>;

// One entry for each CGBlendMode.
const blends: GlobalCompositeOperation[] = ['source-over', 'overlay', 'copy', 'destination-in', 'lighter'];
const copy = 2;

// Text of sizes outside is drawn by scaling: engines round or refuse them.
const smallestFont = 1;
const largestFont = 10000;

// The first letter belongs to a script that is written from the right.
const readsFromRight = /^[^\p{L}]*[\u0590-\u08ff\ufb1d-\ufdff\ufe70-\ufeff]/u;

interface Point {
  x: number;
  y: number;
}

interface Level {
  surface: Surface;
  x: number; // where the level's pixels lie in those of the context's surface, y down
  y: number;
  width: number;
  height: number;
  saves: number;
  effects: Numbers; // the arguments that the group was begun with
}

function byte(component: number): number {
  return Math.round(Math.min(Math.max(component, 0), 1) * 255);
}

function css(a: Numbers, at: number): string {
  return `rgba(${byte(a[at])},${byte(a[at + 1])},${byte(a[at + 2])},${a[at + 3]})`;
}

// Whatever is drawn from here on casts the shadow of offset, standard deviation and colour at `at`.
function castShadow(context: Context, a: Numbers, at: number): void {
  // The canvas's blur is twice the standard deviation; its offsets ignore the transform.
  context.shadowOffsetX = a[at];
  context.shadowOffsetY = a[at + 1];
  context.shadowBlur = 2 * a[at + 2];
  context.shadowColor = css(a, at + 3);
}

function addStops(gradient: CanvasGradient, a: Numbers, from: number, to: number): void {
  for (let i = from; i < to; i += 5) gradient.addColorStop(a[i], css(a, i + 1));
}

function trace(context: Context, a: Numbers, at: number): void {
  context.beginPath();
  for (let i = at; i < a.length; ) {
    switch (a[i]) {
      case 0:
        context.moveTo(a[i + 1], a[i + 2]);
        i += 3;
        break;
      case 1:
        context.lineTo(a[i + 1], a[i + 2]);
        i += 3;
        break;
      case 2:
        context.bezierCurveTo(a[i + 1], a[i + 2], a[i + 3], a[i + 4], a[i + 5], a[i + 6]);
        i += 7;
        break;
      default:
        context.closePath();
        i += 1;
    }
  }
}

function multiplyBrightness(surface: Surface, width: number, height: number, factor: number): void {
  const image = surface.context.getImageData(0, 0, width, height);
  const bytes = image.data;
  for (let i = 0; i < bytes.length; i += 4) {
    for (let j = i; j < i + 3; ++j) bytes[j] = bytes[j] * factor; // clamped and rounded by the array
  }
  surface.context.putImageData(image, 0, 0);
}

export class Painter {
  private readonly levels: Level[] = [];

  constructor(
    surface: Surface,
    scale: number,
    private readonly pool: Pool,
    private readonly fonts: Fonts,
  ) {
    const { width, height } = surface.canvas;
    this.enter({ surface, x: 0, y: 0, width, height, saves: 0, effects: [] });
    // Points with y up from here on.
    this.context.transform(scale, 0, 0, -scale, 0, height);
  }

  close(): void {
    while (this.levels.length > 1) this.endGroup();
    this.leave();
  }

  save(): void {
    this.context.save();
    ++this.level.saves;
  }

  restore(): void {
    if (this.level.saves === 0) return;
    --this.level.saves;
    this.context.restore();
  }

  concat(a: Numbers): void {
    this.context.transform(a[0], a[1], a[2], a[3], a[4], a[5]);
  }

  clip(a: Numbers): void {
    trace(this.context, a, 1);
    this.context.clip(a[0] ? 'evenodd' : 'nonzero');
  }

  fill(a: Numbers): void {
    trace(this.context, a, 6);
    this.paint(a[5], css(a, 1), () => this.context.fill(a[0] ? 'evenodd' : 'nonzero'));
  }

  stroke(a: Numbers): void {
    if (!(a[0] > 0)) return;
    trace(this.context, a, 6);
    this.context.lineWidth = a[0];
    this.paint(a[5], css(a, 1), () => this.context.stroke());
  }

  shadowFill(a: Numbers): void {
    const context = this.context;
    const path = 13 + 5 * a[12];
    const gradient = context.createLinearGradient(a[8], a[9], a[10], a[11]);
    addStops(gradient, a, 13, path);
    trace(context, a, path);
    context.save();
    castShadow(context, a, 0);
    context.fillStyle = gradient;
    context.fill(a[7] ? 'evenodd' : 'nonzero');
    context.restore();
  }

  gradient(a: Numbers): void {
    const [x0, y0, x1, y1, radius, options, alpha, blend] = Array.from(a);
    const context = this.context;
    const gradient = radius > 0 ? context.createRadialGradient(x0, y0, 0, x0, y0, radius) : context.createLinearGradient(x0, y0, x1, y1);
    addStops(gradient, a, 8, a.length);
    context.beginPath();
    const corners = this.corners();
    if (radius > 0) {
      if (options & 2) polygon(context, corners);
      else context.arc(x0, y0, radius, 0, 2 * Math.PI);
    } else {
      // A rectangle along the gradient's axis: t goes along it, s across it.
      const dx = x1 - x0;
      const dy = y1 - y0;
      const length = dx * dx + dy * dy;
      const t = corners.map(({ x, y }) => ((x - x0) * dx + (y - y0) * dy) / length);
      const s = corners.map(({ x, y }) => ((y - y0) * dx - (x - x0) * dy) / length);
      const from = options & 1 ? Math.min(0, ...t) : 0;
      const to = options & 2 ? Math.max(1, ...t) : 1;
      const place = (along: number, across: number) => ({ x: x0 + along * dx - across * dy, y: y0 + along * dy + across * dx });
      const low = Math.min(...s);
      const high = Math.max(...s);
      polygon(context, [place(from, low), place(to, low), place(to, high), place(from, high)]);
    }
    context.globalAlpha = alpha;
    this.paint(blend, gradient, () => context.fill());
    context.globalAlpha = 1;
  }

  image(a: Numbers, source: Surface): void {
    const [, x, y, width, height, pixelWidth, pixelHeight, alpha, blend] = Array.from(a);
    const context = this.context;
    const draw = () => context.drawImage(source.canvas, 0, source.canvas.height - pixelHeight, pixelWidth, pixelHeight, 0, 0, width, height);
    context.save();
    context.transform(1, 0, 0, -1, x, y + height);
    if (blend === copy) {
      context.globalCompositeOperation = 'destination-out';
      context.fillRect(0, 0, width, height);
      context.globalCompositeOperation = 'lighter';
    } else {
      context.globalCompositeOperation = blends[blend];
    }
    context.globalAlpha = alpha;
    try {
      draw();
    } finally {
      context.restore();
    }
  }

  text(a: Numbers, text: string): void {
    const face = this.fonts.face(a[0]);
    const context = this.context;
    const size = Math.min(Math.max(a[1], smallestFont), largestFont);
    const scale = a[1] / size;
    // Before saving: the engine looks at a font again only when it is another one than before.
    context.font = cssFont(face, size);
    prepareForText(context);
    context.textAlign = 'left';
    context.direction = readsFromRight.test(text) ? 'rtl' : 'ltr';
    context.save();
    context.transform(face.widthFactor * scale, 0, 0, -scale, a[2], a[3]);
    this.paint(a[9], css(a, 5), () => context.fillText(text, 0, 0));
    context.restore();
  }

  clear(a: Numbers): void {
    // The canvas's own clearing has hard edges.
    this.context.globalCompositeOperation = 'destination-out';
    this.context.fillStyle = '#000';
    this.context.fillRect(a[0], a[1], a[2], a[3]);
    this.context.globalCompositeOperation = 'source-over';
  }

  beginGroup(a: Numbers): void {
    const [x, y, width, height] = [a[0], a[1], a[2], a[3]];
    const { a: xx, b: yx, c: xy, d: yy, e, f } = this.context.getTransform();
    const parent = this.level;
    const surface = this.pool.take(width, height);
    this.enter({ surface, x, y, width, height, saves: 0, effects: Array.from(a) });
    surface.context.setTransform(xx, yx, xy, yy, e + parent.x - x, f + parent.y - y);
  }

  endGroup(): void {
    if (this.levels.length < 2) return;
    const group = this.leave();
    const { surface, width, height, effects } = group;
    const isLost = surface.canvas.width < width || surface.canvas.height < height;
    if (isLost) return this.pool.give(surface);
    const [, , , , alpha, blend, brightness, hasShadow] = Array.from(effects);
    const context = this.context;
    context.save();
    context.setTransform(1, 0, 0, 1, 0, 0);
    context.globalAlpha = alpha;
    context.globalCompositeOperation = blends[blend];
    if (hasShadow) castShadow(context, effects, 8);
    if (brightness !== 1) {
      if ('filter' in context) context.filter = `brightness(${brightness})`;
      else multiplyBrightness(surface, width, height, brightness);
    }
    try {
      context.drawImage(surface.canvas, 0, 0, width, height, group.x - this.level.x, group.y - this.level.y, width, height);
    } finally {
      context.restore();
      this.pool.give(surface);
    }
  }

  private get level(): Level {
    return this.levels[this.levels.length - 1];
  }

  private get context(): Context {
    return this.level.surface.context;
  }

  private enter(level: Level): void {
    this.levels.push(level);
    level.surface.context.save();
    level.surface.context.setTransform(1, 0, 0, 1, 0, 0);
    level.surface.context.miterLimit = 10;
  }

  private leave(): Level {
    while (this.level.saves > 0) this.restore();
    this.context.restore();
    return this.levels.pop() as Level;
  }

  // Replacing touches only what is painted here, unlike the canvas's own mode of that name.
  private paint(blend: number, style: string | CanvasGradient, draw: () => void): void {
    const context = this.context;
    if (blend === copy) {
      const alpha = context.globalAlpha;
      context.globalAlpha = 1;
      context.globalCompositeOperation = 'destination-out';
      context.fillStyle = context.strokeStyle = '#000';
      draw();
      context.globalAlpha = alpha;
      context.globalCompositeOperation = 'lighter';
    } else {
      context.globalCompositeOperation = blends[blend];
    }
    context.fillStyle = context.strokeStyle = style;
    draw();
    context.globalCompositeOperation = 'source-over';
  }

  // The corners of the level's pixels in user space; none when it has collapsed.
  private corners(): Point[] {
    const { a, b, c, d, e, f } = this.context.getTransform();
    const determinant = a * d - b * c;
    const { width, height } = this.level;
    return [[0, 0], [width, 0], [width, height], [0, height]].map(([x, y]) => ({
      x: (d * (x - e) - c * (y - f)) / determinant,
      y: (a * (y - f) - b * (x - e)) / determinant,
    }));
  }
}

function polygon(context: Context, points: Point[]): void {
  points.forEach(({ x, y }) => context.lineTo(x, y));
  context.closePath();
}
