// A chart's periods and amounts as a table that only screen readers come to. It holds a hundred rows, which are made when
// the page has nothing else to do; where there are more, buttons and a field beside it bring the others.

export type Period = [name: string, amount: string];

export interface PeriodSource {
  // Those from `first` on, counted from 0, `count` at most, and how many there are.
  read(first: number, count: number): { all: number; periods: Period[] };
}

const mostRows = 100;
const longestDelay = 1000; // milliseconds

function make<Name extends keyof HTMLElementTagNameMap>(name: Name, text = '', attributes: Record<string, string> = {}): HTMLElementTagNameMap[Name] {
  const element = document.createElement(name);
  element.textContent = text;
  for (const [key, value] of Object.entries(attributes)) element.setAttribute(key, value);
  return element;
}

export class PeriodTable {
  readonly root = make('div', '', { class: 'voice', role: 'group' });
  private readonly table = make('table');
  private readonly caption = make('caption');
  private readonly body = make('tbody');
  // Beside the table where it does not hold all rows; words of its own are English. The keyboard passes them by: they are
  // for those who read the page, as nobody sees them focused.
  private readonly others = make('div', '', { lang: 'en' });
  private readonly previous = make('button', 'Previous entries', { type: 'button', tabindex: '-1' });
  private readonly next = make('button', 'Next entries', { type: 'button', tabindex: '-1' });
  private readonly field = make('input', '', { type: 'number', min: '1', tabindex: '-1', 'aria-label': 'Go to entry' });
  private readonly source: PeriodSource;
  private name = '';
  private first = 0;
  private all = 0;
  private isOn = false;
  private cancel: (() => void) | undefined;

  constructor(source: PeriodSource) {
    this.source = source;
    const head = make('tr', '', { 'aria-rowindex': '1', lang: 'en' });
    head.append(make('th', 'Period', { scope: 'col' }), make('th', 'Amount', { scope: 'col' }));
    const top = make('thead');
    top.append(head);
    this.table.append(this.caption, top, this.body);
    this.others.append(this.previous, this.next, this.field);
    this.previous.addEventListener('click', () => this.goTo(this.first - mostRows));
    this.next.addEventListener('click', () => this.goTo(this.first + mostRows));
    this.field.addEventListener('change', () => this.goTo(this.field.valueAsNumber - 1));
  }

  // Reads the periods anew as soon as the page has the time.
  start(name: string): void {
    this.name = name;
    this.isOn = true;
    this.cancel?.();
    const fill = () => {
      this.cancel = undefined;
      this.fill();
    };
    if (typeof requestIdleCallback === 'function') {
      const number = requestIdleCallback(fill, { timeout: longestDelay });
      this.cancel = () => cancelIdleCallback(number);
    } else {
      const number = setTimeout(fill, longestDelay);
      this.cancel = () => clearTimeout(number);
    }
  }

  // The rows that were read are there no more.
  stop(): void {
    this.cancel?.();
    this.cancel = undefined;
    this.isOn = false;
    this.first = this.all = 0;
    this.body.replaceChildren();
    this.root.replaceChildren();
  }

  refresh(): void {
    if (this.isOn) this.start(this.name);
  }

  private goTo(index: number): void {
    if (!Number.isFinite(index)) return;
    this.first = Math.max(0, Math.min(Math.floor(index), this.all - 1));
    this.fill();
  }

  private fill(): void {
    const { all, periods } = this.source.read(this.first, mostRows);
    this.all = all;
    const isWhole = all <= mostRows;
    const rows = periods.map(([name, amount], index) => {
      const row = make('tr', '', { 'aria-rowindex': String(this.first + index + 2) });
      row.append(make('th', name, { scope: 'row' }), make('td', amount));
      return row;
    });
    this.body.replaceChildren(...rows);
    this.table.setAttribute('aria-rowcount', String(all + 1));
    const number = (value: number) => value.toLocaleString('en');
    const part = isWhole ? '' : `, ${number(this.first + 1)} to ${number(this.first + periods.length)} of ${number(all)}`;
    this.caption.textContent = this.name + part;
    this.previous.disabled = this.first === 0;
    this.next.disabled = this.first + periods.length >= all;
    this.field.max = String(all);
    this.root.setAttribute('aria-label', this.name);
    const shown = all === 0 ? [] : isWhole ? [this.table] : [this.table, this.others];
    if (shown.length !== this.root.childElementCount) this.root.replaceChildren(...shown);
  }
}
