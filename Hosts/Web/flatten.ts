// Writes the arguments of a page's call down as one block before the module is entered, reading every property once
// and in the order in which the charts ask for it. PageScript.h describes the block.
import { Columns } from './columns';

const enum Tag {
  undefined,
  null,
  false,
  true,
  number,
  string,
  array,
  record,
  opaque,
  thrown,
  table,
}

// The properties that a record is read for; PageScript.cpp has the same.
const keys = ['key', 'value'];

// An array that has more, or never ends, is given up; natively the same number is the limit as long as no other is given.
const mostElements = 1 << 20;

export interface FlatArguments {
  block: Uint8Array;
  // The page's objects that are handed over without being read, by the number under which the module knows them.
  objects: object[];
  // What stays with the page until the module asks for it.
  table?: Columns;
}

type Indexed = Record<PropertyKey, unknown>;

class Block {
  private readonly tags: number[] = [];
  private readonly numbers: number[] = [];
  private readonly references: number[] = [];
  private readonly strings = new Map<string, number>();
  readonly objects: object[] = [];
  private table?: Columns;
  private tableBytes = new Uint8Array();

  value(value: unknown): void {
    switch (typeof value) {
      case 'undefined':
        this.tags.push(Tag.undefined);
        return;
      case 'boolean':
        this.tags.push(value ? Tag.true : Tag.false);
        return;
      case 'number':
      case 'bigint':
        this.tags.push(Tag.number);
        this.numbers.push(Number(value));
        return;
      case 'string':
        this.text(Tag.string, value);
        return;
      case 'symbol':
        this.text(Tag.string, String(value));
        return;
    }
    if (value === null) {
      this.tags.push(Tag.null);
    } else {
      this.tags.push(Tag.opaque);
      this.objects.push(value as object);
    }
  }

  // Everything up to the first undefined element, or also up to the first null.
  array(value: unknown, endsAtNull: boolean): void {
    if ((typeof value !== 'object' && typeof value !== 'function') || value === null) {
      this.value(value);
      return;
    }
    const elements = value as Indexed;
    this.tags.push(Tag.array);
    const countAt = this.references.push(0) - 1;
    for (let index = 0; ; ++index) {
      let element: unknown;
      try {
        element = elements[index];
        const isEnd = element === undefined || (element === null && endsAtNull);
        if (index === mostElements && !isEnd) throw new RangeError(`The array has more than ${mostElements} elements.`);
      } catch (error) {
        this.thrown(error);
        this.references[countAt]++;
        return;
      }
      if (element === undefined) return;
      this.references[countAt]++;
      if (typeof element !== 'object' && typeof element !== 'function') {
        this.value(element);
      } else if (element === null) {
        this.value(element);
        if (endsAtNull) return;
      } else if (!this.record(element as Indexed)) {
        return;
      }
    }
  }

  // The entries of amounts over time.
  entries(value: unknown): void {
    if ((typeof value !== 'object' && typeof value !== 'function') || value === null) {
      this.value(value);
      return;
    }
    const table = (this.table = new Columns(value as Indexed, mostElements));
    const { last } = table;
    this.tags.push(Tag.table);
    this.references.push(table.rowCount, table.number, last ? 1 : 0);
    this.tableBytes = new Uint8Array(table.byteLength());
    table.write(this.tableBytes);
    for (const object of table.objects) this.value(object);
    if (!last) return;
    if ('thrown' in last) this.thrown(last.thrown);
    else this.value(last.value);
  }

  finish(): FlatArguments {
    const texts = [...this.strings.keys()].map((text) => encoder.encode(text));
    const head = 16 + 8 * this.numbers.length;
    const ends = head + 4 * this.references.length;
    const tags = ends + 4 * texts.length;
    let end = tags + this.tags.length;
    const textsAt = end;
    const table = texts.reduce((size, text) => size + text.length, end);
    const block = new Uint8Array(table + (this.table?.byteLength() ?? 0));
    const buffer = block.buffer;
    new Uint32Array(buffer, 0, 4).set([this.tags.length, this.numbers.length, this.references.length, texts.length]);
    new Float64Array(buffer, 16, this.numbers.length).set(this.numbers);
    new Uint32Array(buffer, head, this.references.length).set(this.references);
    block.set(this.tags, tags);
    const endOfText = new Uint32Array(buffer, ends, texts.length);
    texts.forEach((text, index) => {
      block.set(text, end);
      end += text.length;
      endOfText[index] = end - textsAt;
    });
    if (this.table) block.set(this.tableBytes, table);
    return { block, objects: this.objects, table: this.table };
  }

  // False when a property could not be read: nothing is read after it.
  private record(element: Indexed): boolean {
    this.tags.push(Tag.record);
    let failed = false;
    for (const key of keys) {
      if (failed) {
        this.value(undefined);
        continue;
      }
      try {
        this.value(element[key]);
      } catch (error) {
        this.thrown(error);
        failed = true;
      }
    }
    return !failed;
  }

  private thrown(error: unknown): void {
    let text = 'unknown';
    try {
      text = String(error);
    } catch {
      // What the page threw cannot even be shown.
    }
    this.text(Tag.thrown, `The page threw while its data was read: ${text}`);
  }

  private text(tag: Tag, text: string): void {
    let index = this.strings.get(text);
    if (index === undefined) this.strings.set(text, (index = this.strings.size));
    this.tags.push(tag);
    this.references.push(index);
  }
}

const encoder = new TextEncoder();

export function flattenOptions(options: unknown): FlatArguments {
  const block = new Block();
  block.array(options, false);
  return block.finish();
}

export function flattenData(plot: string | null, data: unknown): FlatArguments {
  const block = new Block();
  if (plot === 'pie') block.array(data, true);
  else block.entries(data);
  return block.finish();
}

export function flattenValues(values: unknown[]): FlatArguments {
  const block = new Block();
  for (const value of values) block.value(value);
  return block.finish();
}
