/** The element `<zelkon-plot plot="pie">` or `<zelkon-plot plot="spendingOverTimeBarOrLine">`. */
export interface ZelkonPlotElement extends HTMLElement {
  /** Options of the chart; they take effect when it is next built. */
  SetPlotOptions(options: { key: string; value: unknown }[]): void;
  /** The chart's entries: slices of a pie, or amounts over time. */
  SetPlotData(data: PieEntry[] | PeriodEntry[]): void;
  /** Pies: highlights the slice, or clears every highlight. Calls no function of the page. */
  HoverEntryAtIndex(hover: boolean, index: number): void;
  /** Pies: sets red, green, blue and alpha (0 to 1) of that slice in a pie of so many slices on the object. */
  SliceColorAtIndex(index: number, sliceCount: number, components: object): void;
}

export interface PieEntry {
  key: string;
  value: number;
}

export interface PeriodEntry {
  humanX: string;
  mediumHumanX?: string;
  shortHumanX?: string;
  shortHumanXSubtitle?: string;
  humanY: string;
  /** The amount as text that begins with a number. */
  y: string;
}

declare global {
  interface HTMLElementTagNameMap {
    'zelkon-plot': ZelkonPlotElement;
  }
  interface Window {
    GraphHasDisplayed?(): void;
    SpendingTrendsHaveDisplayed?(): void;
    /** -1 stands for no slice; a pointer that comes from outside the pie comes from index 2^63. */
    SpendingTrendsSliceHoverIndex?(index: number, previous: number): void;
    SpendingTrendsSliceClicked?(index: number): void;
  }
}
