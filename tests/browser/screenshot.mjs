// Takes a picture of a report: screenshot.mjs CHROMIUM REPORT SELECTOR PNG
// The window shows what SELECTOR names and what stands below it.
import { resolve } from "node:path";
import { pathToFileURL } from "node:url";
import { chromium } from "playwright-core";

const [executablePath, report, selector, png] = process.argv.slice(2);
const browser = await chromium.launch({ executablePath, args: ["--no-sandbox", "--disable-gpu"] });
const page = await browser.newPage({ viewport: { width: 1280, height: 1010 } });
await page.goto(pathToFileURL(resolve(report)).href);
// Twice: what is drawn on the way moves the place.
for (let i = 0; i < 2; ++i) {
  await page.locator(selector).evaluate((element) => element.scrollIntoView());
  await page.waitForTimeout(300);
}
await page.screenshot({ path: png });
await browser.close();
