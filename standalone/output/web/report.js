// What a report can do beyond being read: tables are copied by a button, the outline follows the reader.
"use strict";

(() => {
  const words = JSON.parse((document.getElementById("words") || { textContent: "{}" }).textContent);
  const word = (text) => words[text] || text;
  const places = (cell, name) => Number(cell.getAttribute(name)) || 1;

  // The values as rows of texts; a cell that spans several places stands in the first of them.
  function rowsOf(table) {
    const rows = [...table.rows].map(() => []);
    [...table.rows].forEach((row, r) => {
      let column = 0;
      for (const cell of row.cells) {
        while (rows[r][column] !== undefined) ++column;
        const text = cell.textContent.replace(/\s+/g, " ").trim();
        for (let i = 0; i < places(cell, "rowspan"); ++i) {
          for (let j = 0; j < places(cell, "colspan"); ++j) rows[r + i][column + j] = i + j === 0 ? text : "";
        }
      }
    });
    return rows;
  }

  // A spreadsheet takes "-.25**" for a text; without its mark it is a number. A text such as "=1+1" it would
  // compute; with an apostrophe it shows it.
  function forSpreadsheets(table) {
    const formula = /^\s*(?:[=@]|[+-](?![\d.]+\s*$))/;
    const copy = table.cloneNode(true);
    copy.querySelectorAll(".number sup").forEach((mark) => mark.remove());
    for (const cell of copy.querySelectorAll("caption, th, td:not(.number)")) {
      if (formula.test(cell.textContent)) cell.prepend("'");
    }
    for (const name of ["class", "id", "style", "aria-describedby"]) copy.removeAttribute(name);
    return copy;
  }

  function copyTable(table) {
    const copy = forSpreadsheets(table);
    const caption = copy.caption ? copy.caption.textContent.trim() : "";
    const lines = rowsOf(copy).map((row) => row.join("\t"));
    const contents = { "text/html": copy.outerHTML, "text/plain": [...(caption ? [caption] : []), ...lines].join("\r\n") };
    const fill = (event) => {
      for (const [type, text] of Object.entries(contents)) event.clipboardData.setData(type, text);
      event.preventDefault();
    };
    document.addEventListener("copy", fill, { once: true });
    const done = document.execCommand("copy");
    document.removeEventListener("copy", fill);
    if (done) return Promise.resolve();
    const blobs = Object.entries(contents).map(([type, text]) => [type, new Blob([text], { type })]);
    return navigator.clipboard.write([new ClipboardItem(Object.fromEntries(blobs))]);
  }

  function addCopyButton(box) {
    const button = document.createElement("button");
    button.type = "button";
    button.className = "copy";
    button.textContent = word("Copy");
    const table = box.querySelector("table");
    const name = table.caption ? table.caption.textContent.trim() : word("table");
    button.setAttribute("aria-label", word("Copy {1}").replace("{1}", () => name));
    const tell = (text) => {
      button.textContent = text;
      button.classList.add("done");
      setTimeout(() => {
        button.textContent = word("Copy");
        button.classList.remove("done");
      }, 1600);
    };
    button.addEventListener("click", () => copyTable(table).then(() => tell(word("Copied")), () => tell(word("Not copied"))));
    box.append(button);
  }

  // Only what scrolls is a stop for the keyboard.
  const sizes = new ResizeObserver((entries) => {
    for (const { target } of entries) {
      const scrolls = target.scrollWidth > target.clientWidth + 1 || target.scrollHeight > target.clientHeight + 1;
      if (scrolls) target.tabIndex = 0;
      else target.removeAttribute("tabindex");
    }
  });

  function followTheReader(outline) {
    const links = new Map();
    for (const link of outline.querySelectorAll("a")) links.set(link.hash.slice(1), link);
    let current = null;
    const seen = new IntersectionObserver(
      (entries) => {
        const entered = entries.filter((entry) => entry.isIntersecting);
        if (entered.length === 0) return;
        if (current) current.removeAttribute("aria-current");
        current = links.get(entered[0].target.id);
        current.setAttribute("aria-current", "true");
      },
      { rootMargin: "0px 0px -75% 0px" },
    );
    for (const id of links.keys()) {
      const target = document.getElementById(id);
      if (target && !target.matches("section")) seen.observe(target);
    }
  }

  // Paper does not scroll: a table that is wider than a page, as it is printed, is made smaller.
  const tables = [...document.querySelectorAll("table")];
  const { classList } = document.documentElement;
  addEventListener("beforeprint", () => {
    classList.add("paper");
    const shares = tables.map((table) => table.parentElement.clientWidth / table.offsetWidth);
    classList.remove("paper");
    tables.forEach((table, i) => { if (shares[i] < 1) table.style.zoom = String(shares[i]); });
  });
  addEventListener("afterprint", () => tables.forEach((table) => { table.style.zoom = ""; }));

  document.querySelectorAll(".table").forEach(addCopyButton);
  document.querySelectorAll(".scroll").forEach((region) => sizes.observe(region));
  const outline = document.querySelector(".outline");
  if (outline) {
    followTheReader(outline);
    const contents = outline.querySelector("details");
    const narrow = matchMedia("(max-width: 48rem)");
    const fold = () => { contents.open = !narrow.matches; };
    narrow.addEventListener("change", fold);
    fold();
  }
})();
