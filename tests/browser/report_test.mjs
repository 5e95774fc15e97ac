// Opens a report in a browser: report_test.mjs CHROMIUM MAKE_REPORT FOLDER
// The report's texts try to become code; none may run, and everything must still be drawn. Screenshots in both
// colour schemes at two widths, and a print, go to FOLDER.
import { execFileSync } from "node:child_process";
import { mkdirSync } from "node:fs";
import { join } from "node:path";
import { pathToFileURL } from "node:url";
import { chromium } from "playwright-core";

const [browserName, makeReport, folder] = process.argv.slice(2);
const executablePath = execFileSync("which", [browserName], { encoding: "utf8" }).trim();
const failures = [];

function check(what, found, expected = true) {
  const [a, b] = [JSON.stringify(found), JSON.stringify(expected)];
  if (a !== b) failures.push(`${what}: found ${a}, expected ${b}`);
}

// Whatever the page complains of, and every request but the one for itself.
function listen(page, url) {
  page.on("console", (message) => failures.push(`console ${message.type()}: ${message.text().slice(0, 400)}`));
  page.on("pageerror", (error) => failures.push(`page error: ${String(error.stack).slice(0, 600)}`));
  page.on("dialog", (dialog) => { failures.push(`dialog: ${dialog.message()}`); dialog.dismiss(); });
  page.on("request", (request) => { if (request.url() !== url) failures.push(`request: ${request.url()}`); });
}

// Runs in the page. What stands in it, counted.
function structure() {
  const all = (selector) => [...document.querySelectorAll(selector)];
  const levels = all("h1, h2, h3, h4").map((heading) => Number(heading.tagName[1]));
  const ids = all("[id]").map((element) => element.id);
  const width = (table) => {
    const taken = [...table.rows].map(() => []);
    [...table.rows].forEach((row, r) => {
      let c = 0;
      for (const cell of row.cells) {
        while (taken[r][c]) ++c;
        for (let i = 0; i < cell.rowSpan; ++i) for (let j = 0; j < cell.colSpan; ++j) taken[r + i][c + j] = true;
      }
    });
    const widths = new Set(taken.map((row) => (row.includes(undefined) ? "hole" : row.length)));
    return widths.size === 1 ? [...widths][0] : `uneven: ${[...widths]}`;
  };
  const hostile = document.querySelector("#table-1 table");
  return {
    harmed: window.harmed ?? null,
    language: document.documentElement.lang,
    landmarks: [all("main").length, all("nav[aria-label]").length, all("h1").length],
    skippedLevels: levels.filter((level, i) => i > 0 && level > levels[i - 1] + 1).length,
    doubledIds: ids.filter((id, i) => ids.indexOf(id) !== i),
    brokenReferences: all("a[href^='#'], [aria-labelledby], [aria-describedby]")
      .map((e) => e.getAttribute("aria-labelledby") ?? e.getAttribute("aria-describedby") ?? e.hash.slice(1))
      .filter((id) => !document.getElementById(id)),
    strangers: all("img, iframe, object, embed, form:not(.vega-bindings), base, link, textarea, main svg:not(.marks), [onload], [onerror], [onmouseover], [style*='url']").length,
    scripts: [all("script:not([type])").length, all("script[type='application/json']").length],
    unevenTables: all("table").filter((table) => table.rows.length > 0).map(width).filter((w) => typeof w === "string"),
    hostileTable: [hostile.rows.length, width(hostile), hostile.tHead.rows.length, hostile.querySelectorAll("td.number sup").length],
    hostileTexts: [hostile.caption.textContent, hostile.rows[hostile.tHead.rows.length].cells[0].textContent, hostile.querySelector("thead th").textContent],
    tabStops: all("section > .table .scroll[tabindex]").map((region) => region.parentElement.id),
  };
}

// Runs in the page. For each chart: its kind, the marks that it shows and those that its data ask for.
function drawnMarks() {
  return [...document.querySelectorAll("figure.chart")].map((figure) => {
    const data = JSON.parse(figure.querySelector("script").textContent);
    const count = (mark, shape) => figure.querySelectorAll(`svg g.mark-${mark}.role-mark > ${shape}`).length;
    const shown = { rect: count("rect", "path"), symbol: count("symbol", "path"), text: count("text", "text"), line: count("line", "path") };
    const asked = { rect: 0, symbol: 0, text: 0, line: 0 };
    if (data.kind === "histogram") {
      asked.rect = data.counts.length;
      asked.line = data.normalCurve && data.standardDeviation > 0 ? 1 : 0;
    } else if (data.kind === "normalProbability") {
      asked.symbol = data.points.length;
      asked.line = 1;
    } else if (data.kind === "scatterMatrix") {
      const n = data.variables.length;
      asked.rect = (n * (n + 1)) / 2;
      asked.text = 2 * n;
      for (let a = 0; a < n; ++a) for (let b = 0; b < a; ++b) asked.symbol += data.values[a].filter((v, i) => v !== null && data.values[b][i] !== null).length;
    } else {
      asked.rect = data.samples.length * data.checks.length;
      asked.text = data.verdicts.flat().filter((v) => v).length + data.samples.length + data.checks.length;
    }
    const heights = data.kind === "histogram" ? [...figure.querySelectorAll("g.mark-rect > path")].map((bar) => bar.getBBox().height) : [];
    const unit = Math.max(...heights) / Math.max(...(data.counts ?? [1]));
    const unevenBars = heights.filter((height, i) => Math.abs(height - data.counts[i] * unit) > 1 || Math.max(...heights) < 100);
    const box = figure.querySelector("svg")?.getBoundingClientRect() ?? { width: 0, height: 0 };
    return { kind: data.kind, shown, asked, unevenBars, visible: box.width > 100 && box.height > 100 };
  });
}

// Runs in the page. Texts that stand out from what is behind them by less than 4.5 : 1.
function faintTexts() {
  const channels = (colour) => (colour.match(/[\d.]+/g) ?? []).map(Number);
  const luminance = (colour) => {
    const [r, g, b] = channels(colour).map((c) => ((c /= 255) <= 0.04045 ? c / 12.92 : ((c + 0.055) / 1.055) ** 2.4));
    return 0.2126 * r + 0.7152 * g + 0.0722 * b;
  };
  const ratio = (a, b) => (Math.max(a, b) + 0.05) / (Math.min(a, b) + 0.05);
  const behind = (element) => {
    for (let e = element; e; e = e.parentElement) {
      const colour = getComputedStyle(e).backgroundColor;
      if (channels(colour)[3] !== 0) return colour;
    }
    return "rgb(255, 255, 255)";
  };
  const faint = new Set();
  const say = (element, colour, ground) => {
    const found = ratio(luminance(colour), luminance(ground));
    if (found < 4.5) faint.add(`${element.tagName}.${element.getAttribute("class")} ${colour} on ${ground}: ${found.toFixed(2)}`);
  };
  for (const element of document.querySelectorAll("body *:not(svg, svg *, script, style)")) {
    if ([...element.childNodes].some((node) => node.nodeType === 3 && node.data.trim())) say(element, getComputedStyle(element).color, behind(element));
  }
  const page = getComputedStyle(document.body).backgroundColor;
  const rect = new Map();
  document.querySelectorAll("#chart-6 g.mark-rect > path").forEach((path) => rect.set(path.__data__?.datum?.v, getComputedStyle(path).fill));
  for (const text of document.querySelectorAll("svg text")) {
    if (!text.textContent) continue;
    say(text, getComputedStyle(text).fill, rect.get(text.__data__?.datum?.v) ?? page);
  }
  if (rect.size !== 4) faint.add(`verdicts have ${rect.size} colours`);
  return [...faint];
}

// Draws what only readers who scroll so far would see.
async function drawAll(page) {
  await page.evaluate(() => { for (const name of ["beforeprint", "afterprint"]) dispatchEvent(new Event(name)); });
  await page.waitForFunction(() => [...document.querySelectorAll("figure.chart")].every((figure) => figure.querySelector("svg")), null, { timeout: 15000 });
}

async function checkPage(page) {
  const found = await page.evaluate(structure);
  check("nothing ran from data", found.harmed, null);
  check("language", found.language, "en");
  check("landmarks", found.landmarks, [1, 1, 1]);
  check("skipped heading levels", found.skippedLevels, 0);
  check("ids that stand twice", found.doubledIds, []);
  check("references that lead nowhere", found.brokenReferences, []);
  check("elements from data", found.strangers, 0);
  check("scripts", found.scripts, [2, 6]);
  check("tables with rows of different width", found.unevenTables, []);
  check("the hostile table's rows, columns, header rows and marks", found.hostileTable, [21, 5, 3, 9]);
  check("texts are shown as they are", found.hostileTexts,
    ["<script>window.harmed=1</script>a", "<script>window.harmed=1</script>", "\"><img src=x onerror=\"window.harmed=3\">"]);
  check("tables that are stops for the keyboard", found.tabStops, ["table-1", "table-2"]);

}

async function checkCharts(page, kinds) {
  const charts = await page.evaluate(drawnMarks);
  check("kinds of charts", charts.map((chart) => chart.kind), kinds);
  charts.forEach((chart, i) => {
    check(`marks of chart ${i + 1}, ${chart.kind}`, chart.shown, chart.asked);
    check(`chart ${i + 1} is visible`, chart.visible);
    check(`bars of chart ${i + 1} are as high as their counts`, chart.unevenBars, []);
  });
}

async function checkCopying(page) {
  await page.evaluate(() => addEventListener("copy", (event) => {
    window.copied = ["text/plain", "text/html"].map((type) => event.clipboardData.getData(type));
  }));
  await page.locator("#table-2 button").click();
  const [plain, html] = await page.evaluate(() => window.copied ?? ["", ""]);
  const lines = plain.split("\r\n").map((line) => line.split("\t"));
  check("copied lines", lines.map((line) => line.length), [1, 41, 41]);
  check("copied values", [lines[2][0], lines[2][40]], ["Mean", "12345.678"]);
  check("copied markup", html.startsWith("<table>") && html.includes("12345.678"));
  await page.locator("#table-1 button").click();
  const texts = await page.evaluate(() => window.copied);
  check("marks stay out of copied numbers", texts[0].includes("*"), false);
  check("formulas are copied as texts, numbers as they are", texts.map((text) => [
    /'=HYPERLINK/.test(text), /[\t>]=/.test(text), /[\t>]-\d*\.\d+[\t<]/.test(text), /'-/.test(text)]),
    [[true, false, true, false], [true, false, true, false]]);
}

mkdirSync(folder, { recursive: true });
const [small, large] = ["small", "large"].map((size) => {
  const file = join(folder, `${size}.html`);
  execFileSync(makeReport, [size, file]);
  return pathToFileURL(file).href;
});
const browser = await chromium.launch({
  executablePath,
  args: ["--no-sandbox", "--disable-gpu", "--disable-background-networking", "--disable-component-update", "--disable-sync",
    "--no-first-run", "--disable-quic"],
});

async function open(url, options = {}) {
  const page = await browser.newPage({ viewport: { width: 1280, height: 900 }, ...options });
  listen(page, url);
  await page.goto(url);
  return page;
}

async function lookAtBothWidths(page, colorScheme) {
  check(`faint texts, ${colorScheme}`, await page.evaluate(faintTexts), []);
  await page.screenshot({ path: join(folder, `${colorScheme}-1280.png`), fullPage: true });
  await page.setViewportSize({ width: 400, height: 800 });
  await page.waitForTimeout(100);
  check(`page wider than its window, ${colorScheme}`, await page.evaluate(() => document.documentElement.scrollWidth > innerWidth), false);
  check("the outline is folded where there is no room", await page.evaluate(() => document.querySelector(".outline details").open), false);
  await page.screenshot({ path: join(folder, `${colorScheme}-400.png`), fullPage: true });
}

try {
  const light = await open(small);
  await light.keyboard.press("Tab");
  check("the first stop skips the outline", await light.evaluate(() => document.activeElement.className), "skip");
  check("charts far below wait", await light.evaluate(() => document.querySelectorAll(".drawing.waiting").length > 0));
  await drawAll(light);
  await checkPage(light);
  await checkCharts(light, ["scatterMatrix", "histogram", "histogram", "normalProbability", "normalProbability", "verdicts"]);
  await checkCopying(light);
  await lookAtBothWidths(light, "light");

  const dark = await open(small, { colorScheme: "dark" });
  await drawAll(dark);
  await lookAtBothWidths(dark, "dark");

  const printed = await open(small);
  await printed.pdf({ path: join(folder, "print.pdf"), format: "A4" });
  check("charts that print does not draw", await printed.evaluate(() => document.querySelectorAll(".drawing.waiting").length), 0);

  await printed.evaluate(() => dispatchEvent(new Event("beforeprint")));
  await printed.emulateMedia({ media: "print" });
  await printed.setViewportSize({ width: 688, height: 900 });
  check("print is cut off", await printed.evaluate(() => document.documentElement.scrollWidth > innerWidth), false);

  const still = await open(small, { javaScriptEnabled: false });
  check("tables are there without scripts", await still.locator("#table-2 td.number").count(), 40);

  const many = await open(large);
  await drawAll(many);
  await checkCharts(many, ["verdicts", "scatterMatrix", "verdicts"]);
} catch (error) {
  failures.push(String(error.stack));
} finally {
  await browser.close();
}
for (const failure of failures) console.error(failure);
console.log(failures.length === 0 ? "the report is as it should be" : `${failures.length} failures`);
process.exit(failures.length === 0 ? 0 : 1);
