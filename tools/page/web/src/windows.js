// The windows of the density, which any range is made of. Places are counted through all records in
// a row, from 0; a record lies at its offset.

const MAX_BINS = 800;

/** Up to so many records keep bins of their own, and are named on the axis. */
export const MAX_NAMED_RECORDS = 40;

/** Sums over the windows of all records. */
export class Windows {
  constructor(data) {
    this.records = data.records;
    this.window = data.head.window;
    const { count, lengths } = this.records;
    this.offsets = new Float64Array(count + 1);
    const places = [];
    for (let i = 0; i < count; ++i) {
      this.offsets[i + 1] = this.offsets[i] + lengths[i];
      for (let start = 0; start < lengths[i]; start += this.window) places.push(this.offsets[i] + start);
    }
    this.total = this.offsets[count];
    places.push(this.total);
    this.starts = Float64Array.from(places);
    this.sums = new Float64Array(data.windows.length + 1);
    for (let i = 0; i < data.windows.length; ++i) this.sums[i + 1] = this.sums[i] + data.windows[i];
  }

  /** Returns the number of the last item that is not above `place`; the array ascends to an end. */
  static find(array, place) {
    let low = 0;
    let high = array.length - 2;
    while (low < high) {
      const middle = (low + high + 1) >> 1;
      if (array[middle] <= place) low = middle;
      else high = middle - 1;
    }
    return Math.max(low, 0);
  }

  recordAt(place) {
    return Windows.find(this.offsets, place);
  }

  /** Returns up to about `MAX_BINS` bins of whole windows that cover a range of places. */
  bins(begin, end) {
    const first = Windows.find(this.starts, begin);
    const last = Windows.find(this.starts, Math.max(end - 1, begin));
    const step = Math.ceil((last - first + 1) / MAX_BINS);
    const firstRecord = this.recordAt(begin);
    const breaks = this.recordAt(Math.max(end - 1, begin)) - firstRecord < MAX_NAMED_RECORDS;
    const bins = [];
    let record = firstRecord;
    for (let from = first; from <= last; ) {
      while (this.offsets[record + 1] <= this.starts[from]) ++record;
      let to = Math.min(from + step, last + 1);
      // Few records: none shares a bin with the next one.
      if (breaks) while (to > from + 1 && this.starts[to - 1] >= this.offsets[record + 1]) --to;
      const size = this.starts[to] - this.starts[from];
      const covered = this.sums[to] - this.sums[from];
      bins.push({ begin: this.starts[from], end: this.starts[to], share: covered / size, covered, record });
      from = to;
    }
    return bins;
  }
}

/** Returns ticks at round positions of a range, from 0 on. */
export function roundTicks(begin, end) {
  const rough = (end - begin) / 10;
  const power = 10 ** Math.floor(Math.log10(Math.max(rough, 1)));
  const step = [1, 2, 5, 10].map((digit) => digit * power).find((size) => size >= rough) ?? power;
  const ticks = [];
  for (let tick = Math.ceil(begin / step) * step; tick <= end; tick += step) ticks.push(tick);
  return ticks;
}
