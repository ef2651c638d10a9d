// Which part of an element its nearest scroller shows.

function parentOf(element: Element): Element | null {
  const parent = element.assignedSlot ?? element.parentNode;
  return parent instanceof ShadowRoot ? parent.host : parent instanceof Element ? parent : null;
}

// Where the scroll events of the nearest scrolling ancestor arrive: a box of its own or the document.
export function scrollingAncestor(element: Element): EventTarget | null {
  for (let each = parentOf(element); each; each = parentOf(each)) {
    if (each === document.scrollingElement) break;
    const { overflowX, overflowY } = getComputedStyle(each);
    if (/auto|scroll|hidden/.test(overflowX + overflowY)) return each;
  }
  return element.ownerDocument;
}

// The part in the element's own CSS pixels; empty when nothing shows.
export function visiblePart(element: HTMLElement, scroller: EventTarget | null): DOMRect {
  const box = element.getBoundingClientRect();
  const view = scroller instanceof Element ? scroller.getBoundingClientRect() : new DOMRect(0, 0, innerWidth, innerHeight);
  const left = Math.max(box.left, view.left);
  const top = Math.max(box.top, view.top);
  const width = Math.max(0, Math.min(box.right, view.right) - left);
  const height = Math.max(0, Math.min(box.bottom, view.bottom) - top);
  if (!(width > 0 && height > 0)) return new DOMRect();
  const scaleX = element.clientWidth / box.width;
  const scaleY = element.clientHeight / box.height;
  return new DOMRect((left - box.left) * scaleX, (top - box.top) * scaleY, width * scaleX, height * scaleY);
}
