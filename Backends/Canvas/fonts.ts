// The faces of the platform and what the reader's machine has in place of them.

export type Measuring = Pick<CanvasRenderingContext2D, 'font' | 'fontKerning' | 'textRendering' | 'measureText'>;

interface Substitute {
  family: string; // a CSS family list
  isDejaVu: boolean;
}

export interface Face {
  prefix: string; // what stands before the size in a CSS font
  family: string; // what stands after it
  widthFactor: number; // on advances and glyphs
}

const lucidaGrande = ['Lucida Grande', 'Lucida Sans Unicode', 'Lucida Sans', 'DejaVu Sans', 'Verdana'];
const helvetica = ['Helvetica', 'Liberation Sans', 'Arial'];
const sample = 'mmmWgjlI0123456789&';
// Large enough that widths do not suffer from rounding, whatever the engine does.
const measuredSize = 100;

// A family that is there shows its own width whatever stands behind it in the list.
function isInstalled(context: Measuring, family: string): boolean {
  return ['monospace', 'serif'].every((generic) => {
    context.font = `${measuredSize}px ${generic}`;
    const fallback = context.measureText(sample).width;
    context.font = `${measuredSize}px "${family}", ${generic}`;
    return context.measureText(sample).width !== fallback;
  });
}

function substitute(context: Measuring, families: string[]): Substitute {
  const found = families.find((family) => isInstalled(context, family));
  return { family: found ? `"${found}", sans-serif` : 'sans-serif', isDejaVu: found === 'DejaVu Sans' };
}

// Text is laid out at fractional positions, so that widths grow exactly with the size.
export function prepareForText(context: Measuring): void {
  context.fontKerning = 'normal';
  context.textRendering = 'geometricPrecision';
}

export class Fonts {
  private readonly faces: Face[];

  // The context is kept for measuring.
  constructor(private readonly context: Measuring) {
    prepareForText(context);
    const lucida = substitute(context, lucidaGrande);
    const swiss = substitute(context, helvetica);
    // DejaVu Sans is wider than Lucida Grande; the factors give both the same mean width.
    const regular: Face = { prefix: '', family: lucida.family, widthFactor: lucida.isDejaVu ? 0.971 : 1 };
    const bold: Face = { prefix: 'bold ', family: lucida.family, widthFactor: lucida.isDejaVu ? 0.915 : 1 };
    this.faces = [
      regular,
      bold,
      { prefix: '', family: swiss.family, widthFactor: 1 },
      { prefix: 'bold ', family: swiss.family, widthFactor: 1 },
    ];
  }

  // Bit 0: bold; bit 1: Helvetica instead of Lucida Grande.
  face(number: number): Face {
    return this.faces[number & 3];
  }

  // Advance at 1 point per em.
  measure(number: number, text: string): number {
    const face = this.face(number);
    this.context.font = cssFont(face, measuredSize);
    return (this.context.measureText(text).width / measuredSize) * face.widthFactor;
  }
}

export function cssFont(face: Face, size: number): string {
  return `${face.prefix}${size}px ${face.family}`;
}
