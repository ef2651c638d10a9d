// The element <zelkon-plot plot="…">: a chart from the moment it is in the page until it is taken out.
import { flattenData, flattenOptions, flattenValues, type FlatArguments } from './flatten';
import { Keyboard } from './keyboard';
import { PeriodTable } from './periods';
import { cssZoom, PointerTracker } from './pointer';
import { visiblePart, scrollingAncestor } from './scrolling';
import type { Actor, Stage } from './stage';

const sheet = new CSSStyleSheet();
sheet.replaceSync(`
  :host { display: inline-block; width: 300px; height: 150px; }
  :host([hidden]) { display: none; }
  canvas { display: block; width: 100%; height: 100%; border-radius: inherit; }
  :host([plot='spendingOverTimeBarOrLine']) canvas { touch-action: pan-y pinch-zoom; }
  canvas.paper { object-fit: contain; }
  [hidden] { display: none; }
  .voice { position: absolute; width: 1px; height: 1px; overflow: hidden; clip-path: inset(50%); white-space: nowrap; margin-top: -1px; }
`);

// Paper shows finer dots than screens, but a picture must stay within what canvases can hold.
const paperScale = 4;
const mostPaperPixels = 1 << 24;

const stages = new WeakMap<typeof ZelkonPlot, Stage>();

export class ZelkonPlot extends HTMLElement {
  // Besides the chart's name: no-keyboard, for pages that see to keys and screen readers themselves, and the name that
  // screen readers say.
  static readonly observedAttributes = ['plot', 'no-keyboard', 'aria-label'];

  // The stage that elements made from now on play on.
  static set stage(stage: Stage) {
    stages.set(ZelkonPlot, stage);
  }

  readonly #stage = stages.get(ZelkonPlot) as Stage;
  readonly #canvas = document.createElement('canvas');
  readonly #fallback = document.createElement('slot');
  readonly #root = this.attachShadow({ mode: 'open', delegatesFocus: true });
  readonly #pointer = new PointerTracker(this.#canvas, {
    // What is around the element may have moved it without any scrolling.
    entered: () => this.#scrolled(),
    moved: (x, y) => this.#mouse((id) => this.#stage.instance.mouseMoved(id, ...this.#point(x, y))),
    down: (x, y) => this.#mouse((id) => this.#stage.instance.mouseDown(id, ...this.#point(x, y))),
    exited: () => this.#mouse((id) => this.#stage.instance.mouseExited(id)),
  });
  readonly #keyboard = new Keyboard(this.#canvas, {
    step: (steps) => this.#mouse((id) => this.#stage.instance.step(id, steps)),
    stepToEnd: (last) => this.#mouse((id) => this.#stage.instance.stepToEnd(id, last)),
    press: () => this.#mouse((id) => this.#stage.instance.press(id)),
    exited: () => this.#mouse((id) => this.#stage.instance.mouseExited(id)),
  });
  readonly #periods = new PeriodTable({ read: (first, count) => this.#stage.instance.readPeriods(this.#plot, first, count) });
  readonly #resizes = new ResizeObserver((entries) => this.#measured(entries[entries.length - 1]));

  // What the stage may ask; a page sees none of it.
  readonly #actor: Actor = {
    window: () => this.ownerDocument.defaultView,
    restart: () => this.#restart(),
    forget: () => (this.#options = this.#data = undefined),
    screenDidChange: () => this.#resize(...this.#cssSize()),
    announce: (label, amount, share) => this.#keyboard.say(label, amount, share, this.ownerDocument.documentElement.lang || undefined),
    beginPrinting: () => this.#beginPrinting(),
    endPrinting: () => this.#endPrinting(),
  };

  #isStarted = false;
  #plot = 0; // the chart's number on the stage; 0 for none
  #screen = 0; // the canvas's number in the instance
  #width = 0; // points
  #height = 0;
  #cssWidth = 0;
  #cssHeight = 0;
  #paper: HTMLCanvasElement | undefined;
  #scroller: EventTarget | null = null;
  #options: FlatArguments | undefined;
  #data: FlatArguments | undefined;

  constructor() {
    super();
    this.#root.adoptedStyleSheets = [sheet];
    this.#fallback.hidden = true;
    this.#root.append(this.#canvas, this.#fallback, this.#keyboard.voice, this.#periods.root);
  }

  // An array of objects with "key" and "value".
  SetPlotOptions(options?: unknown): void {
    const flat = flattenOptions(options);
    if (this.#call('SetPlotOptions', flat)) this.#options = flat;
  }

  // An array of entries: objects with "key" and "value" for a pie; with "humanX", "humanY", "y" and further names of the
  // period for amounts over time.
  SetPlotData(data?: unknown): void {
    const flat = flattenData(this.getAttribute('plot'), data);
    if (this.#call('SetPlotData', flat)) this.#data = flat;
  }

  // Highlights one slice of a pie, or none.
  HoverEntryAtIndex(hover?: unknown, index?: unknown): void {
    this.#call('HoverEntryAtIndex', flattenValues([hover, index]));
  }

  // Sets red, green, blue and alpha, 0 to 1, on the object: the colour of that slice in a pie of so many.
  SliceColorAtIndex(index?: unknown, sliceCount?: unknown, components?: unknown): void {
    this.#call('SliceColorAtIndex', flattenValues([index, sliceCount, components]));
  }

  connectedCallback(): void {
    this.#stage.enter(this.#actor);
    this.#start();
  }

  disconnectedCallback(): void {
    this.#stop();
    this.#stage.leave(this.#actor);
  }

  // The page has moved the element as it is, with moveBefore(): the chart goes on.
  connectedMoveCallback(): void {
    if (!this.#plot) return;
    this.#unfollowScroller();
    this.#followScroller();
  }

  attributeChangedCallback(name: string): void {
    if (!this.#isStarted) return;
    if (name === 'plot') {
      this.#stop();
      this.#start();
    } else {
      this.#describe();
    }
  }

  #restart(): void {
    const [options, data] = [this.#options, this.#data];
    this.#plot = this.#screen = 0;
    this.#stop();
    this.#start();
    if (options && this.#call('SetPlotOptions', options)) this.#options = options;
    if (data && this.#call('SetPlotData', data)) this.#data = data;
  }

  // A flat picture takes the canvas's place; twice is no harm.
  #beginPrinting(): void {
    if (!this.#plot || this.#paper || !(this.#width > 0 && this.#height > 0)) return;
    const paper = document.createElement('canvas');
    paper.className = 'paper';
    const { instance, scale } = this.#stage;
    const fitting = Math.sqrt(mostPaperPixels / (this.#width * this.#height));
    const number = instance.canvas.bindScreen(paper);
    instance.print(this.#plot, number, Math.max(scale, Math.min(paperScale, fitting)));
    instance.canvas.unbindScreen(number);
    this.#paper = paper;
    this.#canvas.hidden = true;
    this.#root.append(paper);
  }

  #endPrinting(): void {
    if (!this.#paper) return;
    this.#paper.remove();
    this.#paper = undefined;
    this.#canvas.hidden = false;
  }

  #describe(): void {
    const isPie = this.getAttribute('plot') === 'pie';
    const name = this.getAttribute('aria-label') ?? (isPie ? 'Pie chart' : 'Chart');
    this.#canvas.setAttribute('aria-label', name);
    this.#keyboard.stop();
    this.#periods.stop();
    if (!this.#plot || this.hasAttribute('no-keyboard')) return;
    this.#keyboard.start();
    if (!isPie) this.#periods.start(name);
  }

  #start(): void {
    const { instance } = this.#stage;
    this.#isStarted = true;
    this.#canvas.hidden = false;
    this.#setSize(...this.#cssSize());
    this.#screen = instance.canvas.bindScreen(this.#canvas);
    this.#plot = instance.create(this.getAttribute('plot'), this.#screen, this.#width, this.#height);
    this.#canvas.hidden = !this.#plot;
    this.#fallback.hidden = !!this.#plot;
    this.#describe();
    if (!this.#plot) return;
    this.#stage.add(this.#plot, this.#actor);
    try {
      this.#resizes.observe(this.#canvas, { box: 'device-pixel-content-box' });
    } catch {
      this.#resizes.observe(this.#canvas);
    }
    this.#pointer.start();
    this.#followScroller();
  }

  #followScroller(): void {
    this.#scroller = scrollingAncestor(this);
    this.#scroller?.addEventListener('scroll', this.#scrolled, { passive: true });
    if (this.#scroller) this.#scrolled();
  }

  #unfollowScroller(): void {
    this.#scroller?.removeEventListener('scroll', this.#scrolled);
    this.#scroller = null;
  }

  #stop(): void {
    this.#isStarted = false;
    this.#keyboard.stop();
    this.#periods.stop();
    this.#unfollowScroller();
    this.#pointer.stop();
    this.#resizes.disconnect();
    this.#endPrinting();
    if (this.#plot) this.#stage.remove(this.#plot);
    if (this.#screen) this.#stage.instance.canvas.unbindScreen(this.#screen);
    this.#plot = this.#screen = 0;
    this.#options = this.#data = undefined;
    this.#canvas.width = this.#canvas.height = 0;
  }

  // False when there is no chart to call or the call was too much for it.
  #call(name: string, values: FlatArguments): boolean {
    // The chart that starts on the next instance is called with what comes until then.
    if (this.#stage.instance.hasFailed) return !this.#data || this.getAttribute('plot') === 'pie';
    if (!this.#plot) return false;
    this.#stage.needsFrame();
    if (name === 'SetPlotData') this.#periods.refresh();
    return this.#stage.instance.call(this.#plot, name, values);
  }

  #cssSize(): [number, number] {
    // What is not laid out computes to what its style says, which is no size.
    if (this.#canvas.getClientRects().length === 0) return [0, 0];
    const { width, height } = getComputedStyle(this.#canvas);
    return [parseFloat(width) || 0, parseFloat(height) || 0];
  }

  #mouse(send: (id: number) => void): void {
    if (!this.#plot) return;
    send(this.#plot);
    this.#stage.needsFrame();
  }

  // From CSS pixels within the canvas to points.
  #point(x: number, y: number): [number, number] {
    return [x * (this.#width / (this.#cssWidth || 1)), y * (this.#height / (this.#cssHeight || 1))];
  }

  #measured(entry: ResizeObserverEntry): void {
    if (this.#paper) return;
    const [css] = entry.contentBoxSize;
    const device = entry.devicePixelContentBoxSize?.[0];
    this.#resize(css.inlineSize, css.blockSize, device?.inlineSize, device?.blockSize);
  }

  #resize(cssWidth: number, cssHeight: number, pixelWidth?: number, pixelHeight?: number): void {
    const { scale, instance } = this.#stage;
    const [width, height] = [this.#width, this.#height];
    this.#setSize(cssWidth, cssHeight, pixelWidth, pixelHeight);
    if (!this.#plot || (Math.abs(width - this.#width) * scale < 1 && Math.abs(height - this.#height) * scale < 1)) return;
    instance.setSize(this.#plot, this.#width, this.#height);
    if (this.#scroller) this.#scrolled();
    this.#stage.needsFrame();
  }

  // Sizes in points are whole pixels, so that the canvas's pixels are the screen's. The engine's own count of pixels
  // knows how the box falls onto the screen; an emulated screen may have it wrong.
  #setSize(cssWidth: number, cssHeight: number, pixelWidth?: number, pixelHeight?: number): void {
    const { scale } = this.#stage;
    const zoomed = scale * cssZoom(this);
    const points = (css: number, pixels = css * zoomed) => (Math.abs(pixels - css * zoomed) < 1 ? Math.round(pixels) : Math.round(css * zoomed)) / scale;
    this.#cssWidth = cssWidth;
    this.#cssHeight = cssHeight;
    this.#width = points(cssWidth, pixelWidth);
    this.#height = points(cssHeight, pixelHeight);
  }

  readonly #scrolled = (): void => {
    const { x, y, width, height } = visiblePart(this.#canvas, this.#scroller);
    const [left, top] = this.#point(x, y);
    this.#stage.instance.setVisibleRect(this.#plot, left, top, ...this.#point(width, height));
    this.#stage.needsFrame();
  };
}
