// The user's locale as the page's engine knows it: number and currency texts, month names, the calendar. The host puts
// a LocaleRuntime on the module as `Module.locale`.

// A well-formed code that no country uses: it is shown as itself, placed and spaced as currencies are.
const placeholderCode = 'QQQ';
// Shown everywhere as a symbol, beside which many locales set no space.
const symbolCode = 'EUR';
const mostFormatters = 64;

interface RoundingOptions {
  roundingMode?: string;
}

interface Formatter {
  numbers: Intl.NumberFormat;
  roundsHalfEven: boolean; // asking the engine costs more than formatting
}

// Engines without rounding modes round halves away from zero.
function halfEven(value: number, digits: number): number {
  const shifted = value * 10 ** digits;
  return Math.abs(shifted % 1) === 0.5 ? (2 * Math.round(shifted / 2)) / 10 ** digits : value;
}

export class LocaleRuntime {
  private readonly tag: string | undefined;
  private readonly formatters = new Map<string, Formatter>();
  private readonly decoder = new TextDecoder();
  private readonly encoder = new TextEncoder();
  private months: Map<string, number> | undefined;
  private longestYear = 0; // months; 0 as long as nobody has asked

  // A language tag such as `de-DE` or `de_DE`; the page's own language when there is none or the engine rejects it.
  constructor(locale?: string) {
    const tag = locale?.replace(/_/g, '-');
    try {
      this.tag = tag && Intl.getCanonicalLocales(tag)[0];
    } catch {
      this.tag = undefined;
    }
  }

  // UTF-8. Without a code in decimal style; at most so many decimals, halves to even.
  formatNumber(value: number, code: Uint8Array | null, digits: number): Uint8Array {
    return this.encoder.encode(this.format(value, code && this.decoder.decode(code), digits));
  }

  // 1..., 0 for a text that is no month's name.
  monthNamed(text: Uint8Array): number {
    this.months ??= this.namesOfMonths();
    return this.months.get(this.decoder.decode(text).toLowerCase()) ?? 0;
  }

  // Of the longest year.
  monthsPerYear(): number {
    this.longestYear ||= /^(hebrew|coptic|ethiop)/.test(new Intl.DateTimeFormat(this.tag).resolvedOptions().calendar) ? 13 : 12;
    return this.longestYear;
  }

  private format(value: number, code: string | null, digits: number): string {
    if (value === 0) value = 0; // drops the sign of a negative zero
    digits = Math.min(Math.max(digits, 0), 20);
    const wellFormed = code === null || /^[a-z]{3}$/i.test(code);
    const { numbers, roundsHalfEven } = this.formatter(wellFormed ? code : placeholderCode, digits);
    if (!roundsHalfEven) value = halfEven(value, digits);
    if (wellFormed) return numbers.format(value);
    let parts = numbers.formatToParts(value);
    const place = (type: string) => parts.findIndex((part) => part.type === type);
    const besideDigits = place('currency') < place('integer') ? /[\p{S}\p{Z}]$|^$/u : /^[\p{S}\p{Z}]|^$/u;
    if (besideDigits.test(code)) parts = this.formatter(symbolCode, digits).numbers.formatToParts(value);
    return parts.map((part) => (part.type === 'currency' ? code : part.value)).join('');
  }

  private formatter(code: string | null, digits: number): Formatter {
    const key = `${digits}${code ?? ''}`;
    let formatter = this.formatters.get(key);
    if (!formatter) {
      if (this.formatters.size >= mostFormatters) this.formatters.clear();
      const options: Intl.NumberFormatOptions & RoundingOptions = { minimumFractionDigits: 0, maximumFractionDigits: digits, roundingMode: 'halfEven' };
      if (code !== null) Object.assign(options, { style: 'currency', currency: code });
      const numbers = new Intl.NumberFormat(this.tag, options as Intl.NumberFormatOptions);
      formatter = { numbers, roundsHalfEven: (numbers.resolvedOptions() as RoundingOptions).roundingMode === 'halfEven' };
      this.formatters.set(key, formatter);
    }
    return formatter;
  }

  // The full and abbreviated names, both as they stand alone and as they stand in a date.
  private namesOfMonths(): Map<string, number> {
    const format = (options: Intl.DateTimeFormatOptions, locale = this.tag) => new Intl.DateTimeFormat(locale, { ...options, timeZone: 'UTC' });
    const { calendar } = format({}).resolvedOptions();
    const counting = new Intl.DateTimeFormat('en', { month: 'numeric', calendar, timeZone: 'UTC' });
    const names = new Map<string, number>();
    const add = (name: string, number: number) => {
      // In a date some languages have a bare number for the month.
      if (number > 0 && /\p{L}/u.test(name) && !names.has(name.toLowerCase())) names.set(name.toLowerCase(), number);
    };
    for (const month of ['long', 'short'] as const) {
      const alone = format({ month });
      const inDate = format({ month, day: 'numeric' });
      // Two years in small steps meet every month of any calendar.
      for (let day = 0; day < 730; day += 10) {
        const date = new Date(Date.UTC(2000, 0, 1 + day));
        const number = parseInt(counting.format(date), 10);
        add(alone.format(date), number);
        add(inDate.formatToParts(date).find((part) => part.type === 'month')?.value ?? '', number);
      }
    }
    return names;
  }
}
