// The share of bases in repeats along the records, from all of them down to one window.

import { LineChart } from 'echarts/charts';
import { DataZoomInsideComponent, DataZoomSliderComponent } from 'echarts/components';
import * as echarts from 'echarts/core';

import { axis, baseOption, lines, makeChart, shortNumber } from './charts.js';
import { cut, grouped } from './repeats.js';
import { colour } from './theme.js';
import { MAX_NAMED_RECORDS, roundTicks, Windows } from './windows.js';

/** Up to so many repeats are drawn one by one. */
const MAX_DRAWN_REPEATS = 400;
/** A repeat is drawn as wide as such a part of the chart, or wider. */
const MIN_REPEAT_PART = 400;

echarts.use([LineChart, DataZoomInsideComponent, DataZoomSliderComponent]);

// Begins the names of records on the axis. It has no width. The library keeps the widths of texts as
// properties of an object, where "constructor" or "__proto__" would find what is no width.
const NO_PROPERTY = '\u200b';

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
    const first = Math.min(Math.max(start, 1), length) - 1;
    const last = Math.min(Math.max(end, first + 1), length);
    // At least a window is shown; near the end of a record it begins earlier, so that the next
    // record stays out of sight.
    const size = Math.min(Math.max(last - first, this.windows.window), length);
    const begin = offset + Math.min(first, length - size);
    this.setRange(begin, begin + size);
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
        if (stop <= begin) continue; // a record without bases would hide the name of the next one
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

  /** The listed repeats in sight, as a line each at the top, unless there are too many. */
  repeatSeries() {
    const { first, last, start, end } = this.range();
    const rows = first === last ? this.repeats.rowsIn(first, start, end, MAX_DRAWN_REPEATS) : [];
    const offset = this.windows.offsets[first];
    const points = [];
    // What is narrower than a dot would not be drawn.
    const minLength = (this.end - this.begin) / MIN_REPEAT_PART;
    for (const row of rows) {
      const from = offset + this.repeats.rows.start[row] - 1;
      const length = Math.max(this.repeats.rows.length[row], minLength);
      points.push([from, 1], [from + length, 1], [null, null]);
    }
    return {
      type: 'line',
      yAxisIndex: 1,
      data: points,
      symbol: 'none',
      animation: false,
      silent: true,
      lineStyle: { width: 7, color: colour('--accent-strong'), cap: 'butt' },
      emphasis: { disabled: true },
    };
  }

  rangeOption() {
    const labels = this.labels();
    return {
      xAxis: {
        axisLabel: { customValues: [...labels.keys()], formatter: (value) => labels.get(value) ?? '' },
      },
      series: [...this.series(), this.repeatSeries()],
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
    option.yAxis = [
      axis('value', { axisLabel: { formatter: (value) => `${shortNumber(value)} %` } }),
      { type: 'value', min: 0, max: 1, show: false },
    ];
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
