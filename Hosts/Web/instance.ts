// One running instance of the WebAssembly module. An instance that has failed (out of memory, or a fault of its own)
// answers nothing any more; its listener hears of it once and starts another.
import { CanvasRuntime } from '../../Backends/Canvas/canvas';
import { Heap } from '../../Backends/Canvas/heap';
import { canvasImports } from '../../Backends/Canvas/imports';
import { LocaleRuntime } from '../../Backends/Canvas/locale';
import shadowCenter from '../../Resources/shadow_center.png';
import shadowLeft from '../../Resources/shadow_left.png';
import shadowRight from '../../Resources/shadow_right.png';
import type { Columns } from './columns';
import type { FlatArguments } from './flatten';
import type { ZelkonModule } from './module';
import type { Period } from './periods';

export interface InstanceListener {
  // A chart calls a function of its page.
  pageCall(plot: number, name: string, values: unknown[]): void;
  // The keyboard has come to an entry of a chart.
  announce(plot: number, label: unknown, amount: unknown, share: number | null): void;
  instanceFailed(error: unknown): void;
}

const resources = new Map([
  ['shadow_center.png', shadowCenter],
  ['shadow_left.png', shadowLeft],
  ['shadow_right.png', shadowRight],
]);

let compiled: Promise<WebAssembly.Module> | undefined;

async function compile(): Promise<WebAssembly.Module> {
  const response = await fetch(new URL('zelkon-plot.wasm', import.meta.url));
  if (!response.ok) throw new Error(`${response.url}: ${response.status} ${response.statusText}`);
  if (response.headers.get('Content-Type') === 'application/wasm') return WebAssembly.compileStreaming(response);
  return WebAssembly.compile(await response.arrayBuffer());
}

const encoder = new TextEncoder();
const decoder = new TextDecoder();
const shortText = 64;

export class Instance {
  readonly canvas = new CanvasRuntime();
  private readonly heap = new Heap();
  private module!: ZelkonModule;
  private lastPlot = 0;
  private failed = false;
  // Tables that a call hands over or a chart holds, by number.
  private readonly tables = new Map<number, { table: Columns; holders: number }>();
  // What was read last.
  private periods: Period[] = [];
  // What the call that is running sets on the page's objects, to be done when it has returned.
  private assignments: { object: number; key: string; value: unknown }[] = [];

  private constructor(private readonly listener: InstanceListener) {}

  static async start(listener: InstanceListener): Promise<Instance> {
    const instance = new Instance(listener);
    compiled ??= compile();
    const [code] = await Promise.all([compiled, ...[...resources.values()].map((bytes) => instance.canvas.preload(bytes))]);
    const { exports } = await WebAssembly.instantiate(code, instance.imports());
    instance.module = exports as unknown as ZelkonModule;
    instance.heap.memory = instance.module.memory;
    instance.module.__wasm_call_ctors();
    return instance;
  }

  // The number of a new chart, shown on the canvas; 0 when there is no such plot.
  create(plot: string | null, canvas: number, width: number, height: number): number {
    const id = ++this.lastPlot;
    const made = this.enter((module) =>
      this.withBytes(plot === null ? null : encoder.encode(plot), (at, length) => module.zelkon_create(id, at, length, canvas, width, height)),
    );
    return made ? id : 0;
  }

  destroy(id: number): void {
    this.enter((module) => module.zelkon_destroy(id));
  }

  setSize(id: number, width: number, height: number): void {
    this.enter((module) => module.zelkon_set_size(id, width, height));
  }

  setVisibleRect(id: number, x: number, y: number, width: number, height: number): void {
    this.enter((module) => module.zelkon_set_visible_rect(id, x, y, width, height));
  }

  setScreenScale(scale: number): void {
    this.enter((module) => module.zelkon_set_screen_scale(scale));
  }

  setReducesMotion(reduces: boolean): void {
    this.enter((module) => module.zelkon_set_reduces_motion(Number(reduces)));
  }

  mouseMoved(id: number, x: number, y: number): void {
    this.enter((module) => module.zelkon_mouse_moved(id, x, y));
  }

  mouseDown(id: number, x: number, y: number): void {
    this.enter((module) => module.zelkon_mouse_down(id, x, y));
  }

  mouseExited(id: number): void {
    this.enter((module) => module.zelkon_mouse_exited(id));
  }

  // The keyboard: so many entries on or back, to the first or last entry, a click on the present one.
  step(id: number, steps: number): void {
    this.enter((module) => module.zelkon_key_step(id, steps));
  }

  stepToEnd(id: number, last: boolean): void {
    this.enter((module) => module.zelkon_key_end(id, Number(last)));
  }

  press(id: number): void {
    this.enter((module) => module.zelkon_key_press(id));
  }

  // Names and amounts of the periods that a chart shows, from `first` on and `count` at most, and how many there are.
  readPeriods(id: number, first: number, count: number): { all: number; periods: Period[] } {
    this.periods = [];
    const all = this.enter((module) => module.zelkon_read_periods(id, first, count)) ?? 0;
    return { all, periods: this.periods };
  }

  // Carries a page's call out and then sets on the page's objects what the chart has set; setters of the page may throw.
  // Whether a fresh view of the chart would be given the same arguments again.
  call(id: number, name: string, { block, objects, table }: FlatArguments): boolean {
    const outer = this.assignments;
    const assignments: typeof outer = (this.assignments = []);
    if (table) this.tables.set(table.number, { table, holders: (this.tables.get(table.number)?.holders ?? 0) + 1 });
    const kept = this.enter((module) =>
      this.withBytes(encoder.encode(name), (nameAt, nameLength) =>
        this.withBytes(block, (at, length) => module.zelkon_call(id, nameAt, nameLength, at, length)),
      ),
    );
    this.assignments = outer;
    if (table) this.releaseTable(table.number);
    for (const { object, key, value } of assignments) (objects[object] as Record<string, unknown>)[key] = value;
    return !this.failed && !!kept;
  }

  beginTurn(now: number): void {
    this.enter((module) => module.zelkon_begin_turn(now));
  }

  compose(id: number): void {
    this.enter((module) => module.zelkon_compose(id));
  }

  // Whether another turn is due.
  endTurn(): boolean {
    return this.enter((module) => module.zelkon_end_turn()) === 1;
  }

  print(id: number, canvas: number, scale: number): void {
    this.enter((module) => module.zelkon_print(id, canvas, scale));
  }

  // Writes the text down if it has nothing but ASCII. For short ones that is faster than any encoder is called.
  private putLetters(text: string, at: number): boolean {
    const bytes = this.heap.all;
    for (let i = 0; i < text.length; ++i) {
      const unit = text.charCodeAt(i);
      if (unit > 0x7f) return false;
      bytes[at + i] = unit;
    }
    return true;
  }

  private text(at: number, length: number): string {
    return decoder.decode(this.heap.bytes(at, length));
  }

  private withBytes<T>(bytes: Uint8Array | null, use: (at: number, length: number) => T): T {
    if (!bytes) return use(0, 0);
    const at = this.module.malloc(bytes.length || 1);
    this.heap.bytes(at, bytes.length).set(bytes);
    try {
      return use(at, bytes.length);
    } finally {
      if (!this.failed) this.module.free(at);
    }
  }

  private releaseTable(number: number): void {
    if (--this.tables.get(number)!.holders === 0) this.tables.delete(number);
  }

  private enter<T>(use: (module: ZelkonModule) => T): T | undefined {
    if (this.failed) return undefined;
    try {
      return use(this.module);
    } catch (error) {
      if (!this.failed) {
        this.failed = true;
        this.listener.instanceFailed(error);
      }
      return undefined;
    }
  }

  // What the module calls. Nothing here may throw: an exception would cross WebAssembly frames without unwinding them.
  // An instance that has failed inside a function of the page still finishes what had called that function.
  private imports(): WebAssembly.Imports {
    const host = {
      zelkon_page_grow_memory: (pages: number) => {
        try {
          return this.heap.memory.grow(pages) >= 0;
        } catch {
          return false;
        }
      },
      zelkon_page_call: (plot: number, name: number, nameLength: number, values: number, valuesLength: number) => {
        if (!this.failed) this.listener.pageCall(plot, this.text(name, nameLength), JSON.parse(this.text(values, valuesLength)));
      },
      zelkon_page_set: (object: number, key: number, keyLength: number, value: number, valueLength: number) => {
        this.assignments.push({ object, key: this.text(key, keyLength), value: JSON.parse(this.text(value, valueLength)) });
      },
      zelkon_page_announce: (plot: number, entry: number, length: number) => {
        const [label, amount, share] = JSON.parse(this.text(entry, length));
        this.listener.announce(plot, label, amount, share);
      },
      zelkon_page_period: (name: number, nameLength: number, amount: number, amountLength: number) => {
        this.periods.push([this.text(name, nameLength), this.text(amount, amountLength)]);
      },
      zelkon_page_table_hold: (number: number) => {
        ++this.tables.get(number)!.holders;
      },
      zelkon_page_table_release: (number: number) => this.releaseTable(number),
      zelkon_page_table_text: (number: number, cell: number, at: number, capacity: number) => {
        const text = this.tables.get(number)!.table.value(cell) as string;
        if (text.length <= Math.min(shortText, capacity) && this.putLetters(text, at >>> 0)) return text.length;
        const { read, written } = encoder.encodeInto(text, this.heap.bytes(at, capacity));
        // A unit takes three bytes at most.
        return read === text.length ? written : 3 * text.length;
      },
      zelkon_page_table_number: (number: number, cell: number) => this.tables.get(number)!.table.value(cell) as number,
      zelkon_page_log: (line: number, length: number) => console.warn(this.text(line, length)),
      zelkon_page_error: (text: number, length: number) => console.error(`zelkon-plot: ${this.text(text, length)}`),
      zelkon_page_resource: (name: number, nameLength: number, at: number, capacity: number) => {
        const bytes = resources.get(this.text(name, nameLength));
        if (!bytes) return 0;
        if (bytes.length <= capacity) this.heap.bytes(at, bytes.length).set(bytes);
        return bytes.length;
      },
    };
    // The C library's own way out for text; nothing takes it, as the log has a function of its own.
    const badFile = () => 8;
    return {
      env: { ...host, ...canvasImports(this.heap, this.canvas, new LocaleRuntime()) },
      Math: Math as unknown as WebAssembly.ModuleImports,
      wasi_snapshot_preview1: { fd_write: badFile, fd_seek: badFile, fd_close: badFile },
    };
  }
}
