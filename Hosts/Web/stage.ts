// All charts of the page: they share one instance of the module and one loop of frames, which runs only while something
// changes. Also hears of what concerns every chart: the screen's scale, printing, and the wish for less motion.
import { report, reportUncaught } from '../../Backends/Canvas/report';
import { Instance, type InstanceListener } from './instance';

// What the stage asks of an element that is on it.
export interface Actor {
  // The window whose functions its chart calls.
  window(): Window | null;
  // Starts over on the present instance with the page's options and data of before. On one that has failed there is no
  // chart to start: the element shows its own content and keeps them for another instance.
  restart(): void;
  // Options and data of before are not to be used again.
  forget(): void;
  screenDidChange(): void;
  announce(label: unknown, amount: unknown, share: number | null): void;
  beginPrinting(): void;
  endPrinting(): void;
}

const leastScale = 0.25;
const greatestScale = 8;

// What has failed so often fails for a reason of its own, which another start does not take away.
const mostRestarts = 3;
const restartsWithin = 10_000; // milliseconds

// The page may put a clock of its own in the place of the engine's.
const now = performance.now.bind(performance);

export class Stage implements InstanceListener {
  private readonly actors = new Map<number, Actor>();
  private readonly present = new Set<Actor>();
  private current!: Instance;
  private frame = 0;
  private lastTimestamp = 0;
  private mediaTime = 0;
  private isRunning = false;
  private failedInTurn = false;
  private restarts: number[] = []; // when; the latest ones
  private hasGivenUp = false;
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
    if (this.hasGivenUp && this.mayRestart()) this.restart();
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
      reportUncaught(error);
    }
  }

  announce(plot: number, label: unknown, amount: unknown, share: number | null): void {
    this.actors.get(plot)?.announce(label, amount, share);
  }

  instanceFailed(error: unknown): void {
    this.actors.clear();
    // A frame that failed would fail again with the same data.
    if (this.failedInTurn) this.forEach((actor) => actor.forget());
    this.failedInTurn = false;
    if (this.mayRestart()) {
      report('zelkon-plot: the charts have failed and start over.', error);
      this.restart();
    } else {
      this.hasGivenUp = true;
      report('zelkon-plot: the charts have failed too often. In their place the elements show their own content.', error);
      this.startActors();
    }
  }

  private mayRestart(): boolean {
    const time = now();
    this.restarts = this.restarts.filter((each) => time - each < restartsWithin);
    return this.restarts.length < mostRestarts;
  }

  private restart(): void {
    this.hasGivenUp = false;
    this.restarts.push(now());
    const begin = (instance: Instance) => {
      this.current = instance;
      this.mediaTime = 0;
      this.applySettings();
      this.startActors();
    };
    Instance.start(this).then(begin).catch((error) => this.instanceFailed(error));
  }

  private startActors(): void {
    this.forEach((actor) => {
      // Those that are left when the instance fails start on the next one.
      if (this.hasGivenUp || !this.current.hasFailed) actor.restart();
    });
  }

  // What one element makes of it is no concern of the others.
  private forEach(act: (actor: Actor) => void): void {
    for (const actor of [...this.present]) {
      try {
        if (this.present.has(actor)) act(actor);
      } catch (error) {
        reportUncaught(error);
      }
    }
  }

  // The media clock stands still while nothing runs, so that what begins after a pause is shown from its beginning.
  private readonly turn = (timestamp: number): void => {
    this.frame = 0;
    if (this.isRunning) this.mediaTime += Math.max(0, timestamp - this.lastTimestamp) / 1000;
    this.lastTimestamp = timestamp;
    const hadFailed = this.current.hasFailed;
    this.current.beginTurn(this.mediaTime);
    for (const id of [...this.actors.keys()]) this.current.compose(id);
    this.isRunning = this.current.endTurn();
    if (this.current.hasFailed && !hadFailed) this.failedInTurn = true;
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
      this.forEach((actor) => actor.screenDidChange());
      this.watchScale();
    };
    this.resolution.addEventListener('change', changed, { signal, once: true });
  }

  private readonly beginPrinting = (): void => {
    this.forEach((actor) => actor.beginPrinting());
  };

  private readonly endPrinting = (): void => {
    this.forEach((actor) => actor.endPrinting());
  };
}
