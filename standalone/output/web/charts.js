// Draws the charts of a report from their data. A chart's data never become a name of a field, a part of an
// expression or markup: fields have names of our own, texts are values only.
"use strict";

(() => {
  const font = 'system-ui, -apple-system, "Segoe UI", Roboto, "Noto Sans", "DejaVu Sans", sans-serif';
  const ink = (name) => `var(--${name})`;
  const config = {
    aria: false,  // the figure says it all
    background: "transparent",
    font,
    view: { stroke: null },
    axis: {
      labelColor: ink("soft"), titleColor: ink("soft"), gridColor: ink("grid"), domainColor: ink("strong-rule"),
      tickColor: ink("strong-rule"), labelFontSize: 12, titleFontSize: 12.5, titleFontWeight: 500, titlePadding: 10,
      labelPadding: 5, tickSize: 4, titleLimit: 520,
    },
  };

  const pen = document.createElement("canvas").getContext("2d");
  // The pixels that the widest of the texts takes, at most `limit`.
  function widest(texts, size, limit) {
    pen.font = `${size}px ${font}`;
    return Math.min(limit, texts.reduce((width, text) => Math.max(width, pen.measureText(text).width), 0));
  }

  const number = (value, digits = 5) => {
    if (!Number.isFinite(value)) return "";
    return String(Number.isSafeInteger(value) ? value : Number(value.toPrecision(digits)));
  };
  const words = JSON.parse((document.getElementById("words") || { textContent: "{}" }).textContent);
  const word = (text) => words[text] || text;
  const span = (from, to) => word("{1} to {2}").replace("{1}", from).replace("{2}", to);
  const quantitative = (field, more = {}) => ({ field, type: "quantitative", ...more });
  const hidden = { axis: null, legend: null };

  // The height that the normal distribution of mean and deviation has over bins of this width.
  function normalCurve(chart, from, to) {
    const steps = 160;
    const scale = (chart.validCount * chart.binWidth) / (chart.standardDeviation * Math.sqrt(2 * Math.PI));
    return Array.from({ length: steps + 1 }, (_, i) => {
      const x = from + ((to - from) * i) / steps;
      const z = (x - chart.mean) / chart.standardDeviation;
      return { x, y: scale * Math.exp((-z * z) / 2) };
    });
  }

  function histogram(chart, room) {
    const edge = (i) => chart.firstEdge + i * chart.binWidth;
    const end = edge(chart.counts.length);
    // As many digits as tell one edge from the next, far from 0 too.
    const digits = Math.ceil(Math.log10(Math.max(Math.abs(chart.firstEdge), Math.abs(end)) / chart.binWidth)) + 2;
    const name = (i) => number(edge(i), Math.min(Math.max(digits, 5), 17));
    const bars = chart.counts.map((y, i) => ({ a: edge(i), b: edge(i + 1), y, t: span(name(i), name(i + 1)) }));
    const x = { type: "quantitative", scale: { domain: [chart.firstEdge, end], nice: false, zero: false }, title: chart.variable, axis: { grid: false, labelFlush: false } };
    const layer = [{
      data: { values: bars },
      mark: { type: "rect", fill: ink("bar"), stroke: ink("paper"), strokeWidth: 1 },
      encoding: {
        x: { field: "a", ...x }, x2: { field: "b" },
        y: quantitative("y", { title: word("Frequency"), axis: { tickMinStep: 1 }, scale: { zero: true } }),
        y2: { datum: 0 },
        tooltip: [{ field: "t", title: word("Values") }, quantitative("y", { title: word("Frequency") })],
      },
    }];
    if (chart.normalCurve && chart.standardDeviation > 0) {
      layer.push({
        data: { values: normalCurve(chart, chart.firstEdge, end) },
        mark: { type: "line", stroke: ink("ink"), strokeWidth: 1.75, interpolate: "monotone" },
        encoding: { x: { field: "x", ...x }, y: quantitative("y", { title: word("Frequency") }) },
      });
    }
    return { width: Math.min(room - 75, 560), height: 280, layer };
  }

  function normalProbability(chart, room) {
    const side = Math.max(Math.min(room - 80, 360), 180);
    const scale = { domain: [0, 1], nice: false };
    const x = quantitative("x", { scale, title: word("Observed cumulative probability"), axis: { tickCount: 5 } });
    const y = quantitative("y", { scale, title: word("Expected cumulative probability"), axis: { tickCount: 5 } });
    return {
      width: side,
      height: side,
      layer: [
        { data: { values: [{ x: 0, y: 0 }, { x: 1, y: 1 }] }, mark: { type: "line", stroke: ink("strong-rule"), strokeDash: [5, 4] }, encoding: { x, y } },
        {
          data: { values: chart.points.map(([px, py]) => ({ x: px, y: py })) },
          mark: { type: "point", filled: true, fill: ink("accent"), size: 34, opacity: 0.8 },
          encoding: { x, y, tooltip: [quantitative("x", { title: word("Observed"), format: ".4f" }), quantitative("y", { title: word("Expected"), format: ".4f" })] },
        },
      ],
    };
  }

  // Below the diagonal every pair of variables, on it each variable's name and range. One view for all panels:
  // points are placed in the unit square of their panel, row and column give the panel.
  function scatterMatrix(chart, room) {
    const count = chart.variables.length;
    const panel = Math.max(Math.min((room - 20) / count, 170), 64);
    const ranges = chart.values.map((values) => {
      const known = values.filter((value) => value !== null);
      const least = known.reduce((a, b) => Math.min(a, b), Infinity);
      return { least, most: known.reduce((a, b) => Math.max(a, b), -Infinity), known: known.length };
    });
    const inside = (value, { least, most }) => 0.08 + 0.84 * (most > least ? (value - least) / (most - least) : 0.5);
    const points = [], frames = [], names = [];
    for (let row = 0; row < count; ++row) {
      for (let column = 0; column <= row; ++column) {
        frames.push({ x: column + 0.02, x2: column + 0.98, y: row + 0.02, y2: row + 0.98 });
        if (column === row) continue;
        const [across, up] = [chart.values[column], chart.values[row]];
        up.forEach((value, i) => {
          if (value === null || across[i] === null) return;
          points.push({
            x: column + inside(across[i], ranges[column]), y: row + 1 - inside(value, ranges[row]),
            a: `${chart.variables[column]}: ${number(across[i])}`, b: `${chart.variables[row]}: ${number(value)}`,
          });
        });
      }
      const { least, most, known } = ranges[row];
      const range = known > 0 ? span(number(least), number(most)) : word("no values");
      names.push({ x: row + 0.5, y: row + 0.5, n: chart.variables[row], r: range });
    }
    const x = quantitative("x", { scale: { domain: [0, count], nice: false }, ...hidden });
    const y = quantitative("y", { scale: { domain: [0, count], nice: false, reverse: true }, ...hidden });
    const label = (field, more) => ({
      data: { values: names },
      mark: { type: "text", limit: panel - 12, ...more },
      encoding: { x, y, text: { field, type: "nominal" }, tooltip: [{ field: "n", title: word("Variable") }, { field: "r", title: word("Range") }] },
    });
    return {
      width: panel * count,
      height: panel * count,
      layer: [
        { data: { values: frames }, mark: { type: "rect", fill: "transparent", stroke: ink("rule") }, encoding: { x, x2: { field: "x2" }, y, y2: { field: "y2" } } },
        {
          data: { values: points },
          mark: { type: "point", filled: true, fill: ink("accent"), size: panel < 100 ? 12 : points.length < 2000 ? 38 : 20, opacity: 0.7 },
          encoding: { x, y, tooltip: [{ field: "a", title: word("Across") }, { field: "b", title: word("Up") }] },
        },
        label("n", { fill: ink("ink"), fontSize: 12, fontWeight: 600, dy: -6 }),
        label("r", { fill: ink("soft"), fontSize: 11, dy: 10 }),
      ],
    };
  }

  const signs = { pass: "\u2713", warn: "!", fail: "\u2717" };

  function verdicts(chart, room) {
    const [rows, columns] = [chart.samples.length, chart.checks.length];
    const left = widest(chart.samples, 12.5, 230) + 12;
    const top = widest(chart.checks, 12.5, 190) * Math.SQRT1_2 + 22;
    const rightmost = widest(chart.checks.slice(-1), 12.5, 190) * Math.SQRT1_2 + 8;
    const step = Math.max(Math.min((room - left - rightmost - 4) / Math.max(columns, 1), 58), 26);
    const cells = [];
    chart.verdicts.forEach((row, r) => row.forEach((verdict, c) => {
      cells.push({ r, c, v: verdict || "none", t: signs[verdict] || "", s: chart.samples[r], k: chart.checks[c], w: word(verdict || "not judged") });
    }));
    const x = { field: "c", type: "ordinal", scale: { paddingInner: 0.06, paddingOuter: 0.03 }, ...hidden };
    const y = { field: "r", type: "ordinal", scale: { paddingInner: 0.12, paddingOuter: 0.06 }, ...hidden };
    const colour = (inks) => ({ field: "v", type: "nominal", legend: null, scale: { domain: ["pass", "warn", "fail", "none"], range: inks } });
    const tooltip = [{ field: "s", title: word("Sample") }, { field: "k", title: word("Check") }, { field: "w", title: word("Verdict") }];
    const label = { type: "text", fill: ink("ink"), fontSize: 12.5, baseline: "middle" };
    return {
      padding: { left, top, right: rightmost, bottom: 4 },
      autosize: "none",
      width: step * columns,
      height: 23 * rows,
      resolve: { scale: { fill: "independent" } },
      layer: [
        { data: { values: cells }, mark: { type: "rect", cornerRadius: 2 }, encoding: { x, y, fill: colour([ink("pass"), ink("warn"), ink("fail"), "transparent"]), tooltip } },
        {
          data: { values: cells.filter((cell) => cell.t) },
          mark: { type: "text", fontSize: 13, fontWeight: 600 },
          encoding: { x, y, text: { field: "t", type: "nominal" }, fill: colour([ink("pass-ink"), ink("warn-ink"), ink("fail-ink"), "transparent"]), tooltip },
        },
        {
          data: { values: chart.samples.map((s, r) => ({ s, r })) },
          mark: { ...label, align: "right", limit: 230 },
          encoding: { x: { value: -8 }, y, text: { field: "s", type: "nominal" }, tooltip: [{ field: "s", title: word("Sample") }] },
        },
        {
          data: { values: chart.checks.map((k, c) => ({ k, c })) },
          mark: { ...label, align: "left", angle: 315, limit: 190 },
          encoding: { x, y: { value: -10 }, text: { field: "k", type: "nominal" }, tooltip: [{ field: "k", title: word("Check") }] },
        },
      ],
    };
  }

  const makers = { histogram, normalProbability, scatterMatrix, verdicts };

  const silent = { level() { return this; }, error(text) { throw new Error(text); }, warn() { return this; }, info() { return this; }, debug() { return this; } };

  function draw(figure) {
    const drawing = figure.querySelector(".drawing");
    const chart = JSON.parse(figure.querySelector('script[type="application/json"]').textContent);
    const room = Math.max(figure.clientWidth, 280);
    drawing.dataset.room = String(figure.clientWidth);
    const spec = { $schema: "https://vega.github.io/schema/vega-lite/v6.json", padding: 4, ...makers[chart.kind](chart, room), config };
    const compiled = vegaLite.compile(spec, { logger: silent }).spec;
    if (drawing.view) drawing.view.finalize();
    drawing.replaceChildren();
    drawing.classList.remove("waiting");
    // Expressions are interpreted: the page allows no code to be made from texts.
    drawing.view = new vega.View(vega.parse(compiled, null, { ast: true }), {
      expr: vega.expressionInterpreter, renderer: "svg", container: drawing, hover: false, logger: silent,
    });
    drawing.view.run();
  }

  const figures = [...document.querySelectorAll("figure.chart")];
  const roomDrawnFor = (figure) => Number(figure.querySelector(".drawing").dataset.room ?? NaN);
  const close = new Set();  // the figures in the window and around it
  const printing = matchMedia("print");

  function drawIfNeeded(figure) {
    // On paper a drawing is scaled instead.
    const fits = Math.abs(figure.clientWidth - roomDrawnFor(figure)) < 8 || (printing.matches && !Number.isNaN(roomDrawnFor(figure)));
    if (!fits) draw(figure);
  }
  const drawMissing = () => figures.filter((figure) => Number.isNaN(roomDrawnFor(figure))).forEach(draw);

  const nearness = new IntersectionObserver(
    (entries) => {
      for (const { target, isIntersecting } of entries) {
        if (!isIntersecting) {
          close.delete(target);
        } else {
          close.add(target);
          drawIfNeeded(target);
        }
      }
    },
    { rootMargin: "800px" },
  );
  const widths = new ResizeObserver((entries) => entries.forEach(({ target }) => { if (close.has(target)) drawIfNeeded(target); }));
  printing.addEventListener("change", () => { if (printing.matches) drawMissing(); });
  addEventListener("beforeprint", drawMissing);
  for (const figure of figures) {
    figure.querySelector(".drawing").classList.add("waiting");
    nearness.observe(figure);
    widths.observe(figure);
  }
})();
