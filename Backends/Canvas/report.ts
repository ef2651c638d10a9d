// Says in the page's console what has gone wrong. The console is the page's to replace, and the stack may be nearly full:
// reporting never throws.

export function report(...what: unknown[]): void {
  try {
    console.error(...what);
  } catch {
    // There is no other place to say it.
  }
}

// As what no function has caught: the page's own handlers of errors come to it.
export function reportUncaught(error: unknown): void {
  try {
    reportError(error);
  } catch {
    report(error);
  }
}

// Whether the engine had no room left on its stack: wherever that happens, something has been left undone.
export function isStackOverflow(error: unknown): boolean {
  return error instanceof Error && /call stack|recursion/i.test(error.message);
}
