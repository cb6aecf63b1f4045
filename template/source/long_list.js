
// Browsers cut pages that are too high, the earlier the more device pixels a pixel has: 33 million of them in one.
const MOST_HEIGHT = 5000000;

/// A long list of which only the stretches near the viewport exist as elements. The other stretches are empty boxes of
/// about the same height, so the page scrolls as if all were there; of very long lists, they are lower in proportion.
class LongList {
  /// @param parent  the element that the stretches are put into, behind the children that it has.
  /// @param tag     element name of a stretch, such as "section".
  /// @param size    number of items in a stretch.
  /// @param height  estimated height of an item in pixels, until a stretch has been measured.
  /// @param fill    called with (stretch, first, end): appends the elements of these items to the empty stretch.
  /// @param empty   called with (stretch, height): gives a stretch without items this height. By default as a style.
  constructor({ parent, tag, size, height, fill, empty = (stretch, pixels) => { stretch.style.height = pixels + 'px'; } }) {
    Object.assign(this, { parent, tag, size, height, fill, empty, count: 0, stretches: [], heights: [], added: [] });
    // Half a screen in both directions is ready before it comes into view.
    this.observer = new IntersectionObserver((entries) => this.look(entries), { rootMargin: '60% 0px' });
    // The observer reports a frame late, which would show after a long jump.
    addEventListener('scroll', () => this.fillView(), { passive: true });
  }

  /// Starts over with this number of items.
  show(count) {
    this.observer.disconnect();
    this.count = count;
    this.heights = [];
    for (const stretch of this.stretches) stretch.remove();
    const fragment = document.createDocumentFragment();
    this.stretches = Array.from({ length: Math.ceil(count / this.size) }, (_, at) => {
      const stretch = make(this.tag, 'stretch');
      stretch.at = at;
      this.clear(stretch);
      fragment.append(stretch);
      return stretch;
    });
    this.parent.append(fragment);
    for (const stretch of this.stretches) this.observer.observe(stretch);
    this.around(0);
  }

  /// Makes all items exist, as printing needs them, or goes back to those that did before.
  whole(on) {
    this.observer.disconnect();
    if (on) this.added = this.stretches.filter((stretch) => !stretch.filled);
    for (const stretch of this.added) {
      if (on) this.build(stretch);
      else this.clear(stretch);
    }
    if (!on) for (const stretch of this.stretches) this.observer.observe(stretch);
  }

  /// Builds the stretches again that exist, after a change of how items look.
  refresh() {
    this.keepingPlace(() => {
      for (const stretch of this.stretches) if (stretch.filled) this.build(stretch);
    });
  }

  /// Makes the stretch of an item exist, with its neighbours, and returns it.
  stretchOf(index) {
    const at = Math.floor(index / this.size);
    this.keepingPlace(() => this.around(at));
    return this.stretches[at];
  }

  around(at) {
    for (const one of [at - 1, at, at + 1]) {
      const stretch = this.stretches[one];
      if (stretch && !stretch.filled) this.buildAhead(stretch);
    }
  }

  /// Builds a stretch that the observer doesn't know to be near. Observed anew, it is reported once more, and is emptied
  /// then if it was only passed by.
  buildAhead(stretch) {
    this.build(stretch);
    this.observer.unobserve(stretch);
    this.observer.observe(stretch);
  }

  /// Makes the stretches in view exist.
  fillView() {
    const first = this.firstInView();
    if (first === this.stretches.length || this.stretches[first].filled && this.stretches[first + 1]?.filled) return;
    this.keepingPlace(() => {
      for (let at = first; at < this.stretches.length; ++at) {
        const stretch = this.stretches[at];
        if (stretch.getBoundingClientRect().top > innerHeight) return;
        if (!stretch.filled) this.buildAhead(stretch);
      }
    });
  }

  look(entries) {
    // The last report of a stretch counts; there may be several.
    const near = new Map(entries.map(({ target, isIntersecting }) => [target, isIntersecting]));
    const gone = [...near.keys()].filter((stretch) =>
      !near.get(stretch) && stretch.filled && !stretch.contains(document.activeElement));
    // Measured before anything changes, since each change between two measures would lay the page out again.
    for (const stretch of gone) this.heights[stretch.at] = stretch.getBoundingClientRect().height;
    this.keepingPlace(() => {
      for (const stretch of gone) this.clear(stretch);
      for (const [stretch, isNear] of near) if (isNear && !stretch.filled) this.build(stretch);
    });
  }

  build(stretch) {
    stretch.filled = true;
    stretch.removeAttribute('style');
    stretch.replaceChildren();
    const first = stretch.at * this.size;
    this.fill(stretch, first, Math.min(first + this.size, this.count));
  }

  clear(stretch) {
    stretch.filled = false;
    stretch.replaceChildren();
    const items = Math.min(this.size, this.count - stretch.at * this.size);
    const squeezed = Math.min(MOST_HEIGHT / (this.count * this.height), 1);
    this.empty(stretch, Math.ceil((this.heights[stretch.at] || items * this.height) * squeezed));
  }

  /// What is at the top of the screen stays there, and the end of the page at its bottom, whatever a change does to
  /// heights. Not every browser does that, and the style sheet turns it off in those that do.
  keepingPlace(change) {
    const page = document.documentElement;
    if (scrollY > 0 && scrollY + innerHeight >= page.scrollHeight - 1) {
      change();
      scrollTo({ top: page.scrollHeight, behavior: 'instant' });
      return;
    }
    const anchor = scrollY > 0 ? this.anchor() : null;
    const before = anchor && anchor.getBoundingClientRect().top;
    change();
    if (!anchor || !anchor.isConnected) return;
    const shift = anchor.getBoundingClientRect().top - before;
    if (shift) scrollBy({ top: shift, behavior: 'instant' });
  }

  /// The number of the first stretch that ends below the top of the viewport.
  firstInView() {
    let low = 0;
    for (let high = this.stretches.length; low < high;) {
      const middle = (low + high) >> 1;
      if (this.stretches[middle].getBoundingClientRect().bottom > 0) high = middle;
      else low = middle + 1;
    }
    return low;
  }

  /// The first stretch that reaches into the viewport, or an element of it.
  anchor() {
    const stretch = this.stretches[this.firstInView()];
    if (!stretch || !stretch.filled) return stretch;
    for (const child of stretch.children) if (child.getBoundingClientRect().bottom > 0) return child;
    return stretch;
  }
}
