// Reads the page's entries of amounts over time: every property once, in the order in which the chart asks for them, into
// columns of the page's own values. The module gets what each cell holds and the amounts; texts stay here until it asks.
// PageTable.h describes what it gets.

const enum Kind {
  null,
  false,
  true,
  number,
  emptyText,
  text,
  object,
}

const columnCount = 6;
const amountColumn = 5;
const bitsOfPart = 14;
const rowsOfPart = 1 << bitsOfPart;
const rowMask = rowsOfPart - 1;

// So many digits, and such a power of ten, are exact as doubles, so that one division rounds correctly.
const mostExactDigits = 15;
const powersOfTen = Array.from({ length: mostExactDigits + 1 }, (_, exponent) => 10 ** exponent);

// The amount that a plain decimal text stands for; not a number when the text is anything else.
function plainAmount(text: string): number {
  const { length } = text;
  if (length > mostExactDigits + 2) return NaN;
  let digits = 0;
  let fractionDigits = 0;
  let fraction = 0; // 1 behind the point
  let value = 0;
  const sign = text.charCodeAt(0);
  for (let at = sign === 0x2d || sign === 0x2b ? 1 : 0; at < length; ++at) {
    const digit = text.charCodeAt(at) - 0x30;
    if (digit >= 0 && digit <= 9) {
      value = value * 10 + digit;
      ++digits;
      fractionDigits += fraction;
    } else if (digit === -2 && !fraction) {
      fraction = 1;
    } else {
      return NaN;
    }
  }
  if (digits === 0 || digits > mostExactDigits) return NaN;
  if (fractionDigits > 0) value /= powersOfTen[fractionDigits];
  return sign === 0x2d ? -value : value;
}

// Says what each cell of a column's part holds; a symbol becomes its text and a large integer a number.
function settle(part: unknown[], count: number, kinds: Uint8Array): void {
  for (let row = 0; row < count; ++row) {
    const value = part[row];
    let kind: Kind;
    if (typeof value === 'string') {
      kind = value.length > 0 ? Kind.text : Kind.emptyText;
    } else if (value === undefined || value === null) {
      kind = Kind.null;
    } else if (typeof value === 'number') {
      kind = Kind.number;
    } else if (typeof value === 'boolean') {
      kind = value ? Kind.true : Kind.false;
    } else if (typeof value === 'bigint') {
      part[row] = Number(value);
      kind = Kind.number;
    } else if (typeof value === 'symbol') {
      part[row] = String(value);
      kind = Kind.text;
    } else {
      kind = Kind.object;
    }
    kinds[row * columnCount] = kind;
  }
}

function readAmounts(part: unknown[], amounts: Float64Array): void {
  for (let row = 0; row < amounts.length; ++row) {
    const text = part[row];
    amounts[row] = typeof text === 'string' ? plainAmount(text) : NaN;
  }
}

// One of what an entry is read for, all rows of it: parts of equal length, so that nothing is copied as it grows.
class Column {
  readonly parts: unknown[][] = [];

  // The part that the row is in; it is there once its first row has been asked for.
  partFor(row: number): unknown[] {
    const part = row >> bitsOfPart;
    if (part === this.parts.length) this.parts.push(part === 0 ? [] : new Array(rowsOfPart));
    return this.parts[part];
  }
}

let lastNumber = 0;

export class Columns {
  // Under which the module knows the table.
  readonly number = ++lastNumber;
  rowCount = 0;
  // What ended the reading if it was an element: null, a value without properties; or what the page threw.
  last: { value: unknown } | { thrown: unknown } | undefined;
  // The objects among the cells, row after row.
  readonly objects: object[] = [];
  private readonly columns = Array.from({ length: columnCount }, () => new Column());

  // An array that has more elements is given up.
  constructor(elements: Record<PropertyKey, unknown>, mostElements: number) {
    const [humanX, mediumHumanX, shortHumanX, shortHumanXSubtitle, humanY, y] = this.columns;
    let row = 0;
    try {
      for (;;) {
        const parts = [humanX.partFor(row), mediumHumanX.partFor(row), shortHumanX.partFor(row), shortHumanXSubtitle.partFor(row), humanY.partFor(row), y.partFor(row)];
        const [longNames, mediumNames, shortNames, subtitles, labels, amounts] = parts;
        const end = (row | rowMask) + 1;
        for (; row < end; ++row) {
          const element = elements[row] as Record<string, unknown> | null | undefined;
          if (row === mostElements && element !== undefined && element !== null) throw new RangeError(`The array has more than ${mostElements} elements.`);
          if ((typeof element !== 'object' && typeof element !== 'function') || element === null) {
            if (element !== undefined) this.last = { value: element };
            return;
          }
          const at = row & rowMask;
          longNames[at] = element.humanX;
          mediumNames[at] = element.mediumHumanX;
          shortNames[at] = element.shortHumanX;
          subtitles[at] = element.shortHumanXSubtitle;
          labels[at] = element.humanY;
          amounts[at] = element.y;
        }
      }
    } catch (error) {
      this.last = { thrown: error };
    } finally {
      this.rowCount = row;
    }
  }

  byteLength(): number {
    return this.rowCount * (Float64Array.BYTES_PER_ELEMENT + columnCount);
  }

  // Writes down the amounts of all rows and then what each cell holds.
  write(bytes: Uint8Array): void {
    const amounts = new Float64Array(this.rowCount);
    const kinds = bytes.subarray(amounts.byteLength);
    for (let first = 0; first < this.rowCount; first += rowsOfPart) {
      const count = Math.min(rowsOfPart, this.rowCount - first);
      this.columns.forEach(({ parts }, column) =>
        settle(parts[first >> bitsOfPart], count, kinds.subarray(first * columnCount + column)),
      );
      readAmounts(this.columns[amountColumn].parts[first >> bitsOfPart], amounts.subarray(first, first + count));
    }
    bytes.set(new Uint8Array(amounts.buffer));
    for (let cell = kinds.indexOf(Kind.object); cell >= 0; cell = kinds.indexOf(Kind.object, cell + 1)) {
      this.objects.push(this.value(cell) as object);
    }
  }

  value(cell: number): unknown {
    const row = Math.floor(cell / columnCount);
    return this.columns[cell % columnCount].parts[row >> bitsOfPart][row & rowMask];
  }
}
