// The memory of the WebAssembly module. Its views move when it grows, so each is taken anew when it is needed.
export class Heap {
  memory!: WebAssembly.Memory;
  private view = new Uint8Array();

  get all(): Uint8Array {
    if (this.view.buffer !== this.memory.buffer) this.view = new Uint8Array(this.memory.buffer);
    return this.view;
  }

  // Lets the memory go, as it is not needed any more.
  release(): void {
    this.memory = new WebAssembly.Memory({ initial: 0 });
    this.view = new Uint8Array();
  }

  // Pointers come as signed numbers.
  bytes(at: number, count: number): Uint8Array {
    return this.all.subarray(at >>> 0, (at >>> 0) + count);
  }
}
