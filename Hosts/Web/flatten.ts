// Writes the arguments of a page's call down as one block before the module is entered, reading every property once
// and in the order in which the charts ask for it. PageScript.h describes the block.

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
}

// The properties that each kind of record is read for; PageScript.cpp has the same sets.
const keySets = [
  ['key', 'value'],
  ['humanX', 'mediumHumanX', 'shortHumanX', 'shortHumanXSubtitle', 'humanY', 'y'],
];

// An array that never ends is given up here.
const mostElements = 1 << 20;

export interface FlatArguments {
  block: Uint8Array;
  // The page's objects that are handed over without being read, by the number under which the module knows them.
  objects: object[];
}

type Indexed = Record<PropertyKey, unknown>;

class Block {
  private readonly tags: number[] = [];
  private readonly numbers: number[] = [];
  private readonly references: number[] = [];
  private readonly strings = new Map<string, number>();
  readonly objects: object[] = [];

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
  array(value: unknown, keySet: number, endsAtNull: boolean): void {
    if ((typeof value !== 'object' && typeof value !== 'function') || value === null) {
      this.value(value);
      return;
    }
    const elements = value as Indexed;
    this.tags.push(Tag.array);
    const countAt = this.references.push(0, keySet) - 2;
    for (let index = 0; ; ++index) {
      let element: unknown;
      try {
        if (index === mostElements) throw new RangeError(`The array has more than ${mostElements} elements.`);
        element = elements[index];
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
      } else if (!this.record(element as Indexed, keySets[keySet])) {
        return;
      }
    }
  }

  finish(): Uint8Array {
    const texts = [...this.strings.keys()].map((text) => encoder.encode(text));
    const head = 16 + 8 * this.numbers.length;
    const ends = head + 4 * this.references.length;
    const tags = ends + 4 * texts.length;
    let end = tags + this.tags.length;
    const block = new Uint8Array(texts.reduce((size, text) => size + text.length, end));
    const buffer = block.buffer;
    new Uint32Array(buffer, 0, 4).set([this.tags.length, this.numbers.length, this.references.length, texts.length]);
    new Float64Array(buffer, 16, this.numbers.length).set(this.numbers);
    new Uint32Array(buffer, head, this.references.length).set(this.references);
    block.set(this.tags, tags);
    const textsAt = end;
    const endOfText = new Uint32Array(buffer, ends, texts.length);
    texts.forEach((text, index) => {
      block.set(text, end);
      end += text.length;
      endOfText[index] = end - textsAt;
    });
    return block;
  }

  // False when a property could not be read: nothing is read after it.
  private record(element: Indexed, keys: string[]): boolean {
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
  block.array(options, 0, false);
  return { block: block.finish(), objects: block.objects };
}

export function flattenData(plot: string | null, data: unknown): FlatArguments {
  const block = new Block();
  block.array(data, plot === 'pie' ? 0 : 1, true);
  return { block: block.finish(), objects: block.objects };
}

export function flattenValues(values: unknown[]): FlatArguments {
  const block = new Block();
  for (const value of values) block.value(value);
  return { block: block.finish(), objects: block.objects };
}
