// Makes a chart usable without a pointer: it can be focused, the arrow keys go from entry to entry as a pointer would,
// and a screen reader hears the chart's name and each entry's label, amount and share.

export interface KeyboardListener {
  step(steps: number): void;
  stepToEnd(last: boolean): void;
  press(): void;
  exited(): void;
}

const steps = new Map([
  ['ArrowRight', 1],
  ['ArrowDown', 1],
  ['ArrowLeft', -1],
  ['ArrowUp', -1],
]);

// A page may call its language by a name that engines do not take, such as "en_US".
function formatted(value: number, language: string | undefined, options: Intl.NumberFormatOptions): string {
  try {
    return new Intl.NumberFormat(language, options).format(value);
  } catch {
    return new Intl.NumberFormat(undefined, options).format(value);
  }
}

export class Keyboard {
  // Says what it holds to a screen reader.
  readonly voice = document.createElement('div');
  private readonly canvas: HTMLCanvasElement;
  private readonly listener: KeyboardListener;
  private listening: AbortController | undefined;
  private isStepping = false;

  constructor(canvas: HTMLCanvasElement, listener: KeyboardListener) {
    this.canvas = canvas;
    this.listener = listener;
    this.voice.className = 'voice';
    this.voice.setAttribute('aria-live', 'polite');
  }

  start(): void {
    this.listening = new AbortController();
    const { signal } = this.listening;
    this.canvas.tabIndex = 0;
    this.canvas.setAttribute('role', 'application');
    this.canvas.setAttribute('aria-roledescription', 'chart');
    this.canvas.addEventListener('keydown', (event) => this.pressed(event), { signal });
    this.canvas.addEventListener('blur', () => this.leave(), { signal });
    this.canvas.addEventListener('pointermove', () => (this.isStepping = false), { signal });
  }

  stop(): void {
    this.listening?.abort();
    this.isStepping = false;
    this.voice.textContent = '';
    this.canvas.removeAttribute('tabindex');
    this.canvas.removeAttribute('aria-roledescription');
    this.canvas.setAttribute('role', 'img');
  }

  say(label: unknown, amount: unknown, share: number | null, language: string | undefined): void {
    const number = (value: number, options: Intl.NumberFormatOptions) => formatted(value, language, options);
    const parts = [label, typeof amount === 'number' ? number(amount, { maximumFractionDigits: 2 }) : amount];
    if (share !== null) parts.push(number(share, { style: 'percent', maximumFractionDigits: 1 }));
    this.voice.textContent = parts.filter((part) => part !== null && part !== '').join(', ');
  }

  private pressed(event: KeyboardEvent): void {
    if (event.altKey || event.ctrlKey || event.metaKey || !this.handle(event.key)) return;
    event.preventDefault();
  }

  private handle(key: string): boolean {
    const by = steps.get(key);
    if (by !== undefined) {
      this.isStepping = true;
      this.listener.step(by);
    } else if (key === 'Home' || key === 'End') {
      this.isStepping = true;
      this.listener.stepToEnd(key === 'End');
    } else if (this.isStepping && (key === 'Enter' || key === ' ')) {
      this.listener.press();
    } else if (this.isStepping && key === 'Escape') {
      this.leave();
    } else {
      return false;
    }
    return true;
  }

  private leave(): void {
    if (!this.isStepping) return;
    this.isStepping = false;
    this.voice.textContent = '';
    this.listener.exited();
  }
}
