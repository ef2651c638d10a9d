// What the WebAssembly module exports, as Exports.cpp defines it.
export interface ZelkonModule {
  memory: WebAssembly.Memory;
  // Runs once, before anything else.
  __wasm_call_ctors(): void;
  malloc(size: number): number;
  free(pointer: number): void;
  zelkon_create(id: number, plot: number, plotLength: number, canvas: number, width: number, height: number): number;
  zelkon_destroy(id: number): void;
  zelkon_set_size(id: number, width: number, height: number): void;
  zelkon_set_visible_rect(id: number, x: number, y: number, width: number, height: number): void;
  zelkon_set_screen_scale(scale: number): void;
  zelkon_set_reduces_motion(reduces: number): void;
  zelkon_mouse_moved(id: number, x: number, y: number): void;
  zelkon_mouse_down(id: number, x: number, y: number): void;
  zelkon_mouse_exited(id: number): void;
  zelkon_key_step(id: number, steps: number): void;
  zelkon_key_end(id: number, last: number): void;
  zelkon_key_press(id: number): void;
  zelkon_read_periods(id: number, first: number, count: number): number;
  zelkon_call(id: number, name: number, nameLength: number, block: number, size: number): number;
  zelkon_begin_turn(now: number): void;
  zelkon_compose(id: number): void;
  zelkon_end_turn(): number;
  zelkon_print(id: number, canvas: number, scale: number): void;
}
