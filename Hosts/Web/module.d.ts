// The module as Emscripten makes it, and the files that the build takes in as bytes.
declare module 'zelkon-plot-module' {
  export interface ZelkonModule {
    HEAPU8: Uint8Array;
    _malloc(size: number): number;
    _free(pointer: number): void;
    _zelkon_create(id: number, plot: number, plotLength: number, canvas: number, width: number, height: number): number;
    _zelkon_destroy(id: number): void;
    _zelkon_set_size(id: number, width: number, height: number): void;
    _zelkon_set_visible_rect(id: number, x: number, y: number, width: number, height: number): void;
    _zelkon_set_screen_scale(scale: number): void;
    _zelkon_set_reduces_motion(reduces: number): void;
    _zelkon_mouse_moved(id: number, x: number, y: number): void;
    _zelkon_mouse_down(id: number, x: number, y: number): void;
    _zelkon_mouse_exited(id: number): void;
    _zelkon_key_step(id: number, steps: number): void;
    _zelkon_key_end(id: number, last: number): void;
    _zelkon_key_press(id: number): void;
    _zelkon_read_periods(id: number, first: number, count: number): number;
    _zelkon_call(id: number, name: number, nameLength: number, block: number, size: number): void;
    _zelkon_begin_turn(now: number): void;
    _zelkon_compose(id: number): void;
    _zelkon_end_turn(): number;
    _zelkon_print(id: number, canvas: number, scale: number): void;
  }
  export default function createModule(options: Record<string, unknown>): Promise<ZelkonModule>;
}

declare module '*.png' {
  const bytes: Uint8Array;
  export default bytes;
}
