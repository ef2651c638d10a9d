// One running instance of the WebAssembly module. An instance that has failed (out of memory, no room left on the stack,
// or a fault of its own) answers nothing any more; its listener hears of it once and starts another.
import { CanvasRuntime } from '../../Backends/Canvas/canvas';
import { Heap } from '../../Backends/Canvas/heap';
import { canvasImports } from '../../Backends/Canvas/imports';
import { LocaleRuntime } from '../../Backends/Canvas/locale';
import { isStackOverflow } from '../../Backends/Canvas/report';
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
  // Comes with an empty stack, once what the failure ended has returned.
  instanceFailed(error: unknown): void;
}

interface Assignment {
  object: number; // counted among the objects of the call's arguments
  key: string;
  value: unknown;
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
const settled = Promise.resolve();

export class Instance {
  readonly canvas = new CanvasRuntime();
  private readonly heap = new Heap();
  private module: ZelkonModule | undefined;
  private lastPlot = 0;
  private failure: { error: unknown } | undefined;
  private isWatched = false;
  // Tables that a call hands over or a chart holds, by number.
  private readonly tables = new Map<number, { table: Columns; holders: number }>();
  // What was read last.
  private periods: Period[] = [];
  // What the call that is running sets on the page's objects, to be done when it has returned.
  private assignments: Assignment[] = [];

  private constructor(private readonly listener: InstanceListener) {}

  static async start(listener: InstanceListener): Promise<Instance> {
    const instance = new Instance(listener);
    compiled ??= compile();
    const [code] = await Promise.all([compiled, ...[...resources.values()].map((bytes) => instance.canvas.preload(bytes))]);
    const { exports } = await WebAssembly.instantiate(code, instance.imports());
    const module = exports as unknown as ZelkonModule;
    instance.module = module;
    instance.heap.memory = module.memory;
    module.__wasm_call_ctors();
    return instance;
  }

  get hasFailed(): boolean {
    return this.failure !== undefined;
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
    const assignments: Assignment[] = [];
    const kept = this.enter((module) => {
      const outer = this.assignments;
      this.assignments = assignments;
      if (table) this.holdTable(table);
      const answer = this.withBytes(encoder.encode(name), (nameAt, nameLength) =>
        this.withBytes(block, (at, length) => module.zelkon_call(id, nameAt, nameLength, at, length)),
      );
      if (table) this.releaseTable(table.number);
      this.assignments = outer;
      return answer;
    });
    for (const { object, key, value } of assignments) (objects[object] as Record<string, unknown>)[key] = value;
    return !this.failure && !!kept;
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
    const { malloc, free } = this.module!;
    const at = malloc(bytes.length || 1);
    this.heap.bytes(at, bytes.length).set(bytes);
    const result = use(at, bytes.length);
    if (!this.failure) free(at);
    return result;
  }

  private holdTable(table: Columns): void {
    this.tables.set(table.number, { table, holders: (this.tables.get(table.number)?.holders ?? 0) + 1 });
  }

  private releaseTable(number: number): void {
    if (--this.tables.get(number)!.holders === 0) this.tables.delete(number);
  }

  private enter<T>(use: (module: ZelkonModule) => T): T | undefined {
    if (this.failure) return undefined;
    this.watch();
    try {
      return use(this.module!);
    } catch (error) {
      // On a full stack nothing can be called.
      this.failure ??= { error };
      return undefined;
    }
  }

  // Where it has failed there may be no room on the stack to tell anybody, so that is seen to when the task is over.
  private watch(): void {
    if (this.isWatched) return;
    void settled.then(this.look);
    this.isWatched = true;
  }

  private readonly look = (): void => {
    this.isWatched = false;
    if (!this.failure) return;
    this.module = undefined;
    this.heap.release();
    this.tables.clear();
    this.listener.instanceFailed(this.failure.error);
  };

  private fail(error: unknown): void {
    this.failure ??= { error };
  }

  // What the page or the engine has thrown does no harm to the instance, unless it was the stack that was full: nobody
  // knows then what has not been done.
  private readonly caught = (error: unknown): void => {
    if (isStackOverflow(error)) this.fail(error);
  };

  // What the module calls. Nothing here may throw: an exception would cross WebAssembly frames without unwinding them.
  // An instance that has failed inside a function of the page still finishes what had called that function, in silence.
  private imports(): WebAssembly.Imports {
    // Whatever is thrown here ends the instance.
    const guarded =
      <Values extends number[]>(body: (...values: Values) => void) =>
      (...values: Values): void => {
        if (this.failure) return;
        try {
          body(...values);
        } catch (error) {
          this.fail(error);
        }
      };
    const log = (write: (text: string) => void) => (at: number, length: number) => {
      if (this.failure) return;
      try {
        write(this.text(at, length));
      } catch (error) {
        this.caught(error);
      }
    };
    const host = {
      zelkon_page_grow_memory: (pages: number) => {
        try {
          return this.heap.memory.grow(pages) >= 0;
        } catch {
          return false;
        }
      },
      zelkon_page_call: guarded((plot: number, name: number, nameLength: number, values: number, valuesLength: number) =>
        this.listener.pageCall(plot, this.text(name, nameLength), JSON.parse(this.text(values, valuesLength))),
      ),
      zelkon_page_set: guarded((object: number, key: number, keyLength: number, value: number, valueLength: number) => {
        this.assignments.push({ object, key: this.text(key, keyLength), value: JSON.parse(this.text(value, valueLength)) });
      }),
      zelkon_page_announce: guarded((plot: number, entry: number, length: number) => {
        const [label, amount, share] = JSON.parse(this.text(entry, length));
        this.listener.announce(plot, label, amount, share);
      }),
      zelkon_page_period: guarded((name: number, nameLength: number, amount: number, amountLength: number) => {
        this.periods.push([this.text(name, nameLength), this.text(amount, amountLength)]);
      }),
      zelkon_page_table_hold: guarded((number: number) => {
        ++this.tables.get(number)!.holders;
      }),
      zelkon_page_table_release: guarded((number: number) => this.releaseTable(number)),
      zelkon_page_table_text: (number: number, cell: number, at: number, capacity: number) => {
        try {
          const text = this.tables.get(number)!.table.value(cell) as string;
          if (text.length <= Math.min(shortText, capacity) && this.putLetters(text, at >>> 0)) return text.length;
          const { read, written } = encoder.encodeInto(text, this.heap.bytes(at, capacity));
          // A unit takes three bytes at most.
          return read === text.length ? written : 3 * text.length;
        } catch (error) {
          this.fail(error);
          return 0;
        }
      },
      zelkon_page_table_number: (number: number, cell: number) => {
        try {
          return this.tables.get(number)!.table.value(cell) as number;
        } catch (error) {
          this.fail(error);
          return 0;
        }
      },
      zelkon_page_log: log((line) => console.warn(line)),
      zelkon_page_error: log((text) => console.error(`zelkon-plot: ${text}`)),
      zelkon_page_resource: (name: number, nameLength: number, at: number, capacity: number) => {
        try {
          const bytes = resources.get(this.text(name, nameLength));
          if (!bytes) return 0;
          if (bytes.length <= capacity) this.heap.bytes(at, bytes.length).set(bytes);
          return bytes.length;
        } catch (error) {
          this.fail(error);
          return 0;
        }
      },
    };
    // The C library's own way out for text; nothing takes it, as the log has a function of its own.
    const badFile = () => 8;
    return {
      env: { ...host, ...canvasImports(this.heap, this.canvas, new LocaleRuntime(), this.caught) },
      Math: Math as unknown as WebAssembly.ModuleImports,
      wasi_snapshot_preview1: { fd_write: badFile, fd_seek: badFile, fd_close: badFile },
    };
  }
}
