// All charts of the page: they share one instance of the module and one loop of frames, which runs only while something
// changes. Also hears of what concerns every chart: the screen's scale, printing, and the wish for less motion.
import { Instance, type InstanceListener } from './instance';

// What the stage asks of an element that is on it.
export interface Actor {
  // The window whose functions its chart calls.
  window(): Window | null;
  // Starts over on a new instance, with the page's data of before or without.
  restart(keepsData: boolean): void;
  screenDidChange(): void;
  announce(label: unknown, amount: unknown, share: number | null): void;
  beginPrinting(): void;
  endPrinting(): void;
}

const leastScale = 0.25;
const greatestScale = 8;

function report(error: unknown): void {
  if (typeof reportError === 'function') reportError(error);
  else console.error(error);
}

export class Stage implements InstanceListener {
  private readonly actors = new Map<number, Actor>();
  private readonly present = new Set<Actor>();
  private current!: Instance;
  private frame = 0;
  private lastTimestamp = 0;
  private mediaTime = 0;
  private isRunning = false;
  private isInTurn = false;
  private hasShownFrame = false; // by the current instance
  private listening: AbortController | undefined;
  private resolution: MediaQueryList | undefined;

  private constructor() {}

  // Resolves when charts can be made.
  static async open(): Promise<Stage> {
    const stage = new Stage();
    stage.current = await Instance.start(stage);
    return stage;
  }

  get instance(): Instance {
    return this.current;
  }

  get scale(): number {
    return Math.min(Math.max(devicePixelRatio || 1, leastScale), greatestScale);
  }

  // Elements in the page, with or without a chart.
  enter(actor: Actor): void {
    this.present.add(actor);
    if (!this.listening) this.listen();
  }

  leave(actor: Actor): void {
    this.present.delete(actor);
    if (this.present.size > 0) return;
    this.listening?.abort();
    this.listening = undefined;
    cancelAnimationFrame(this.frame);
    this.frame = 0;
    this.isRunning = false;
  }

  add(id: number, actor: Actor): void {
    this.actors.set(id, actor);
    this.needsFrame();
  }

  remove(id: number): void {
    this.actors.delete(id);
    this.current.destroy(id);
  }

  needsFrame(): void {
    this.frame ||= requestAnimationFrame(this.turn);
  }

  pageCall(plot: number, name: string, values: unknown[]): void {
    try {
      const window = this.actors.get(plot)?.window() as (Window & Record<string, unknown>) | null | undefined;
      const method = window?.[name];
      if (typeof method === 'function') method.apply(window, values);
    } catch (error) {
      report(error);
    }
  }

  announce(plot: number, label: unknown, amount: unknown, share: number | null): void {
    this.actors.get(plot)?.announce(label, amount, share);
  }

  instanceFailed(error: unknown): void {
    console.error('zelkon-plot: the charts have failed and start over.', error);
    this.actors.clear();
    // One that has never come so far as to show anything would fail in the same way again.
    if (!this.hasShownFrame) return;
    // A frame that failed would fail again with the same data.
    const keepsData = !this.isInTurn;
    Instance.start(this).then((instance) => {
      this.current = instance;
      this.mediaTime = 0;
      this.hasShownFrame = false;
      this.applySettings();
      for (const actor of [...this.present]) actor.restart(keepsData);
    }, report);
  }

  // The media clock stands still while nothing runs, so that what begins after a pause is shown from its beginning.
  private readonly turn = (timestamp: number): void => {
    this.frame = 0;
    if (this.isRunning) this.mediaTime += Math.max(0, timestamp - this.lastTimestamp) / 1000;
    this.lastTimestamp = timestamp;
    this.isInTurn = true;
    this.current.beginTurn(this.mediaTime);
    for (const id of [...this.actors.keys()]) this.current.compose(id);
    this.isRunning = this.current.endTurn();
    this.isInTurn = false;
    this.hasShownFrame = true;
    if (this.isRunning) this.needsFrame();
  };

  private listen(): void {
    this.listening = new AbortController();
    const { signal } = this.listening;
    const less = matchMedia('(prefers-reduced-motion: reduce)');
    less.addEventListener('change', this.applySettings, { signal });
    addEventListener('beforeprint', this.beginPrinting, { signal });
    addEventListener('afterprint', this.endPrinting, { signal });
    matchMedia('print').addEventListener('change', ({ matches }) => (matches ? this.beginPrinting() : this.endPrinting()), { signal });
    this.applySettings();
    this.watchScale();
  }

  private readonly applySettings = (): void => {
    this.current.setScreenScale(this.scale);
    this.current.setReducesMotion(matchMedia('(prefers-reduced-motion: reduce)').matches);
    if (this.present.size > 0) this.needsFrame();
  };

  // A query tells when the scale is no longer the one that it names, and is then spent.
  private watchScale(): void {
    const signal = this.listening?.signal;
    if (!signal || signal.aborted) return;
    this.resolution = matchMedia(`(resolution: ${devicePixelRatio}dppx)`);
    const changed = () => {
      this.applySettings();
      for (const actor of this.present) actor.screenDidChange();
      this.watchScale();
    };
    this.resolution.addEventListener('change', changed, { signal, once: true });
  }

  private readonly beginPrinting = (): void => {
    for (const actor of this.present) actor.beginPrinting();
  };

  private readonly endPrinting = (): void => {
    for (const actor of this.present) actor.endPrinting();
  };
}
