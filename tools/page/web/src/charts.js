// Bar charts of all repeats of the report.

import { BarChart } from 'echarts/charts';
import { GridComponent, TooltipComponent } from 'echarts/components';
import * as echarts from 'echarts/core';
import { CanvasRenderer } from 'echarts/renderers';

import { grouped } from './repeats.js';
import { colour, onTheme } from './theme.js';

echarts.use([BarChart, GridComponent, TooltipComponent, CanvasRenderer]);

const FONT = 'system-ui, -apple-system, "Segoe UI", Roboto, "Noto Sans", sans-serif';

const bars = []; // charts of bars, each as a function that draws it again
let isLogarithmic = false;

/** Draws all bars on a logarithmic scale, or on a linear one. */
export function setLogarithmic(isWanted) {
  isLogarithmic = isWanted;
  for (const draw of bars) draw();
}

/** Returns what all charts share: fonts, colours, margins and the box with the figures. */
export function baseOption() {
  return {
    animationDuration: 250,
    animationDurationUpdate: 150,
    textStyle: { fontFamily: FONT, color: colour('--text') },
    grid: { left: 8, right: 16, top: 16, bottom: 8, containLabel: true },
    tooltip: {
      trigger: 'axis',
      axisPointer: { type: 'shadow', shadowStyle: { color: colour('--hover') } },
      backgroundColor: colour('--card'),
      borderColor: colour('--line'),
      textStyle: { color: colour('--text'), fontSize: 13 },
      confine: true,
    },
  };
}

/** Returns an axis in the colours of the page. */
export function axis(type, more = {}) {
  return {
    type,
    axisLine: { lineStyle: { color: colour('--line') } },
    axisTick: { show: false },
    axisLabel: { color: colour('--muted'), hideOverlap: true, ...more.axisLabel },
    splitLine: { show: type !== 'category', lineStyle: { color: colour('--grid') } },
    nameTextStyle: { color: colour('--muted') },
    ...Object.fromEntries(Object.entries(more).filter(([key]) => key !== 'axisLabel')),
  };
}

/** Returns lines of text as an element; nothing in them is read as HTML. */
export function lines(...texts) {
  const box = document.createElement('div');
  texts.forEach((text, i) => {
    const line = document.createElement(i === 0 ? 'strong' : 'div');
    line.textContent = text;
    line.style.display = 'block';
    box.append(line);
  });
  return box;
}

/** Returns a short form of a count for an axis: 12k, 3.4M. */
export function shortNumber(number) {
  for (const [size, letter] of [[1e9, 'G'], [1e6, 'M'], [1e3, 'k']]) {
    if (Math.abs(number) >= size) return `${Number((number / size).toPrecision(4))}${letter}`;
  }
  return String(Number(number.toPrecision(3)));
}

/**
 * Makes a chart that follows the size of its place and the colours of the page.
 * @param {HTMLElement} place
 * @param {function(): object} makeOption called again when the colours change
 */
export function makeChart(place, makeOption) {
  const chart = echarts.init(place, null, {
    renderer: 'canvas',
    devicePixelRatio: Math.max(2, window.devicePixelRatio),
  });
  chart.setOption(makeOption());
  onTheme(() => chart.setOption(makeOption(), { notMerge: true }));
  new ResizeObserver(() => chart.resize({ animation: { duration: 0 } })).observe(place);
  return chart;
}

/**
 * Draws bars, one for each item.
 * @param {HTMLElement} place
 * @param {{label: string, count: number, lines: string[]}[]} items
 * @param {{name: string, isFlat?: boolean, pick?: function(number)}} more name of the axis of the
 *   items; bars that lie flat; what a click on an item does
 */
export function drawBars(place, items, { name, isFlat = false, pick }) {
  const makeOption = () => {
    const option = baseOption();
    const categories = axis('category', {
      data: items.map((item) => item.label),
      name: isFlat ? undefined : name,
      nameLocation: 'middle',
      nameGap: 28,
      inverse: isFlat,
      axisLabel: isFlat ? { interval: 0, fontFamily: 'ui-monospace, monospace' } : {},
    });
    const values = axis(isLogarithmic ? 'log' : 'value', {
      minInterval: 1,
      min: isLogarithmic ? 1 : 0,
      axisLabel: { formatter: shortNumber },
    });
    option.tooltip.formatter = ([point]) => lines(...items[point.dataIndex].lines);
    option.xAxis = isFlat ? values : categories;
    option.yAxis = isFlat ? categories : values;
    if (!isFlat) option.grid.bottom = 30;
    option.series = [{
      type: 'bar',
      // Nothing is drawn where there is nothing.
      data: items.map((item) => item.count || null),
      barCategoryGap: items.length > 40 ? '10%' : '28%',
      barMaxWidth: 46,
      // A few repeats beside very many are still to be seen.
      barMinHeight: 2,
      itemStyle: { color: colour('--accent'), borderRadius: isFlat ? [0, 3, 3, 0] : [3, 3, 0, 0] },
      emphasis: { itemStyle: { color: colour('--accent-strong') } },
      cursor: pick ? 'pointer' : 'default',
    }];
    return option;
  };
  const chart = makeChart(place, makeOption);
  bars.push(() => chart.setOption(makeOption(), { notMerge: true }));
  if (pick) chart.on('click', (event) => pick(event.dataIndex));
  place.setAttribute('role', 'img');
  return chart;
}

/** Returns "1,234 repeats". */
export function repeatText(count) {
  return `${grouped(count)} ${count === 1 ? 'repeat' : 'repeats'}`;
}
