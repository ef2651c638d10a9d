// What the WebAssembly module imports from this backend, as CanvasImports.h declares it: each function finds its bytes in
// the module's memory and hands on. None lets a JavaScript exception through: it would cross WebAssembly frames, where it
// would skip every destructor.
import type { CanvasRuntime } from './canvas';
import type { Heap } from './heap';
import type { LocaleRuntime } from './locale';

// `caught` gets what the page's engine has thrown.
export function canvasImports(heap: Heap, canvas: CanvasRuntime, locale: LocaleRuntime, caught: (error: unknown) => void = () => {}) {
  const attempt = <T>(otherwise: T, body: () => T): T => {
    try {
      return body();
    } catch (error) {
      caught(error);
      return otherwise;
    }
  };
  return {
    zkCanvasReplay: (commands: number, count: number, strings: number, stringBytes: number) =>
      attempt(undefined, () => canvas.replay(new Float64Array(heap.memory.buffer, commands >>> 0, count), heap.bytes(strings, stringBytes), caught)),
    zkCanvasMake: (width: number, height: number) => attempt(0, () => canvas.make(width, height)),
    zkCanvasDecode: (bytes: number, count: number, size: number) =>
      attempt(0, () => {
        const { id, width, height } = canvas.decode(heap.bytes(bytes, count));
        new Int32Array(heap.memory.buffer, size >>> 0, 2).set([width, height]);
        return id;
      }),
    zkCanvasRead: (surface: number, pixels: number, count: number) =>
      attempt(0, () => Number(canvas.read(surface, heap.bytes(pixels, count)))),
    zkCanvasMeasure: (face: number, text: number, bytes: number) =>
      attempt(0, () => canvas.measure(face, heap.bytes(text, bytes))),
    zkLocaleFormatNumber: (value: number, code: number, codeBytes: number, digits: number, out: number, capacity: number) =>
      attempt(0, () => {
        const text = locale.formatNumber(value, code ? heap.bytes(code, codeBytes) : null, digits);
        if (text.length <= capacity) heap.bytes(out, text.length).set(text);
        return text.length;
      }),
    zkLocaleMonthNamed: (text: number, bytes: number) => attempt(0, () => locale.monthNamed(heap.bytes(text, bytes))),
    zkLocaleMonthsPerYear: () => attempt(12, () => locale.monthsPerYear()),
  };
}
