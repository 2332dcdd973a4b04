// The share of bases in repeats along the records, from all of them down to one window. Places are
// counted through all records in a row, from 0; a record lies at its offset.

import { LineChart } from 'echarts/charts';
import { DataZoomInsideComponent, DataZoomSliderComponent } from 'echarts/components';
import * as echarts from 'echarts/core';

import { axis, baseOption, lines, makeChart, shortNumber } from './charts.js';
import { cut, grouped } from './repeats.js';
import { colour } from './theme.js';

echarts.use([LineChart, DataZoomInsideComponent, DataZoomSliderComponent]);

const MAX_BINS = 800;
const MAX_NAMED_RECORDS = 40;

// Begins the names of records on the axis. It has no width. The library keeps the widths of texts as
// properties of an object, where "constructor" or "__proto__" would find what is no width.
const NO_PROPERTY = '\u200b';

/** Sums over the windows of all records. */
class Windows {
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

  /** Returns the last item of an ascending array that is not above `place`. */
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
function roundTicks(begin, end) {
  const rough = (end - begin) / 10;
  const power = 10 ** Math.floor(Math.log10(Math.max(rough, 1)));
  const step = [1, 2, 5, 10].map((digit) => digit * power).find((size) => size >= rough) ?? power;
  const ticks = [];
  for (let tick = Math.ceil(begin / step) * step; tick <= end; tick += step) ticks.push(tick);
  return ticks;
}

/** The chart with its zoom. */
export class Density {
  /**
   * @param {HTMLElement} place
   * @param {object} data what `readTable` returns
   * @param {import('./repeats.js').Repeats} repeats
   */
  constructor(place, data, repeats) {
    this.windows = new Windows(data);
    this.repeats = repeats;
    this.begin = 0;
    this.end = this.windows.total;
    this.onRange = () => {};
    this.chart = makeChart(place, () => this.option());
    this.chart.on('datazoom', () => {
      const zoom = this.chart.getOption().dataZoom[0];
      this.setRange(zoom.startValue, zoom.endValue, false);
    });
    place.setAttribute('role', 'img');
  }

  /** Shows a range of places; at least one window, at most everything. */
  setRange(begin, end, isOurs = true) {
    const { total, window } = this.windows;
    const size = Math.min(Math.max(end - begin, Math.min(window, total)), total);
    this.begin = Math.min(Math.max(begin, 0), total - size);
    this.end = this.begin + size;
    if (isOurs) {
      this.chart.dispatchAction({ type: 'dataZoom', startValue: this.begin, endValue: this.end });
      return;
    }
    this.chart.setOption(this.rangeOption());
    this.onRange();
  }

  /** Zooms by a factor around the middle: below 1 goes nearer. */
  zoom(factor) {
    const middle = (this.begin + this.end) / 2;
    const half = ((this.end - this.begin) / 2) * factor;
    this.setRange(middle - half, middle + half);
  }

  /** Moves by a part of what is shown. */
  pan(part) {
    const step = (this.end - this.begin) * part;
    this.setRange(this.begin + step, this.end + step);
  }

  showAll() {
    this.setRange(0, this.windows.total);
  }

  /** Shows a range of a record; positions are 1-based, closed. */
  showPlace(record, start, end) {
    const offset = this.windows.offsets[record];
    const length = this.windows.records.lengths[record];
    this.setRange(offset + Math.min(start, length) - 1, offset + Math.min(end, length));
  }

  /** Returns what is shown: first and last record and, if it is one, its positions. */
  range() {
    const { windows } = this;
    const first = windows.recordAt(Math.round(this.begin));
    const last = windows.recordAt(Math.max(Math.round(this.end) - 1, 0));
    const offset = windows.offsets[first];
    return { first, last, start: Math.round(this.begin) - offset + 1, end: Math.round(this.end) - offset };
  }

  /** Returns places and labels of the axis: positions within one record, names of several. */
  labels() {
    const { windows, repeats } = this;
    const { first, last, start, end } = this.range();
    const labels = new Map();
    if (first === last) {
      for (const tick of roundTicks(start, end)) labels.set(windows.offsets[first] + tick, shortNumber(tick));
    } else if (last - first < MAX_NAMED_RECORDS) {
      for (let record = first; record <= last; ++record) {
        const begin = Math.max(windows.offsets[record], this.begin);
        const stop = Math.min(windows.offsets[record + 1], this.end);
        const name = repeats.recordName(record);
        labels.set((begin + stop) / 2, NO_PROPERTY + cut(name, 14));
      }
    } else {
      for (const tick of roundTicks(this.begin, this.end)) labels.set(tick, shortNumber(tick));
    }
    return labels;
  }

  /** Two series, so that records in a row differ in colour. */
  series() {
    this.shownBins = this.windows.bins(this.begin, this.end);
    const points = [[], []];
    this.shownBins.forEach((bin, i) => {
      const own = points[bin.record % 2];
      const previous = this.shownBins[i - 1];
      if (previous && previous.record % 2 !== bin.record % 2) own.push([bin.begin, null]);
      own.push([bin.begin, bin.share * 100], [bin.end, bin.share * 100]);
    });
    return points.map((data, i) => {
      const paint = colour(i === 0 ? '--accent' : '--accent-other');
      return {
        type: 'line',
        data,
        symbol: 'none',
        animation: false,
        connectNulls: false,
        lineStyle: { width: 1, color: paint },
        areaStyle: { color: paint, opacity: 0.55 },
        emphasis: { disabled: true },
      };
    });
  }

  rangeOption() {
    const labels = this.labels();
    return {
      xAxis: {
        axisLabel: { customValues: [...labels.keys()], formatter: (value) => labels.get(value) ?? '' },
      },
      series: this.series(),
    };
  }

  tooltipLines(place) {
    const { windows, repeats } = this;
    const bin = this.shownBins.find((one) => one.begin <= place && place < one.end) ?? this.shownBins.at(-1);
    if (!bin) return [''];
    const last = windows.recordAt(bin.end - 1);
    const start = grouped(bin.begin - windows.offsets[bin.record] + 1);
    const name = cut(repeats.recordName(bin.record), 60);
    const range = last === bin.record
      ? `${name}: ${start}–${grouped(bin.end - windows.offsets[bin.record])}`
      : `${name} to ${cut(repeats.recordName(last), 60)}`;
    return [range, `${(bin.share * 100).toPrecision(3)} % in repeats`,
      `${grouped(bin.covered)} of ${grouped(bin.end - bin.begin)} bp`];
  }

  option() {
    const option = baseOption();
    const range = this.rangeOption();
    option.grid.bottom = 62;
    option.tooltip.axisPointer = { type: 'line', lineStyle: { color: colour('--muted') } };
    option.tooltip.formatter = ([point]) => lines(...this.tooltipLines(point.axisValue));
    option.xAxis = axis('value', {
      min: 0,
      max: Math.max(this.windows.total, 1),
      axisLabel: range.xAxis.axisLabel,
      splitLine: { show: false },
    });
    option.yAxis = axis('value', { axisLabel: { formatter: (value) => `${shortNumber(value)} %` } });
    option.series = range.series;
    const shared = {
      startValue: this.begin,
      endValue: Math.max(this.end, 1),
      minValueSpan: Math.min(this.windows.window, this.windows.total),
      filterMode: 'none',
    };
    option.dataZoom = [
      { ...shared, type: 'inside', zoomOnMouseWheel: 'ctrl', moveOnMouseWheel: false },
      {
        ...shared,
        type: 'slider',
        height: 24,
        bottom: 8,
        showDataShadow: false,
        showDetail: false,
        brushSelect: false,
        borderColor: colour('--line'),
        backgroundColor: 'transparent',
        fillerColor: colour('--hover'),
        handleStyle: { color: colour('--card'), borderColor: colour('--accent') },
        moveHandleStyle: { color: colour('--accent'), opacity: 0.5 },
      },
    ];
    return option;
  }
}
