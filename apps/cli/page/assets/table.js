// Tables that can be sorted and searched.
"use strict";
// columns: [{key, title, kind: "text" | "name" | "number" | "code", decimals, hint, show(row)}]; rows: objects by key.
// options: {id, search, sortBy, descending, limit, what}; limit: rows that are shown before all are asked for.
Page.table = (columns, rows, options = {}) => {
    const make = Page.make;
    const limit = options.limit || 250;
    const collator = new Intl.Collator(undefined, { numeric: true, sensitivity: "base" });
    let sortKey = options.sortBy || null, isDescending = Boolean(options.descending), isWhole = rows.length <= limit;
    let words = [];

    const textOf = (value) => Array.isArray(value) ? value.join(" ") : value === null || value === undefined ? "" : String(value);
    const haystacks = rows.map((row) => columns.map((column) => textOf(row[column.key])).join("\n").toLocaleLowerCase());

    // What is missing stands at the end, whichever way the rows run.
    function compare(a, b) {
        const one = rows[a][sortKey], other = rows[b][sortKey];
        const isOneMissing = one === null || one === undefined || one === "";
        const isOtherMissing = other === null || other === undefined || other === "";
        if (isOneMissing || isOtherMissing)
            return isOneMissing - isOtherMissing || a - b;
        const order = typeof one === "number" && typeof other === "number"
            ? one - other : collator.compare(textOf(one), textOf(other));
        return (isDescending ? -order : order) || a - b;
    }

    function cell(column, row) {
        const value = row[column.key];
        const classes = [column.kind === "number" ? "number" : "", column.kind === "code" ? "code" : ""].join(" ").trim();
        const content = column.show ? column.show(row)
            : column.kind === "number" ? (value === null || value === undefined ? "\u2013" : Page.number(value, column.decimals || 0))
                : Page.name(textOf(value) || "\u2013");
        return make("td", { class: classes || null, "data-title": column.title }, content);
    }

    const body = make("tbody");
    const status = make("p", { class: "note count control", role: "status" });
    const more = make("button", { type: "button", class: "more control", onclick: () => { isWhole = true; fill(); } });

    function fill() {
        let chosen = rows.map((row, i) => i).filter((i) => words.every((word) => haystacks[i].includes(word)));
        if (sortKey !== null)
            chosen.sort(compare);
        const found = chosen.length;
        if (!isWhole)
            chosen = chosen.slice(0, limit);
        body.replaceChildren(...chosen.map((i) => make("tr", {}, columns.map((column) => cell(column, rows[i])))));
        status.textContent = words.length === 0 ? Page.counted(found, ...(options.what || ["row", "rows"]))
            : `${Page.number(found)} of ${Page.counted(rows.length, ...(options.what || ["row", "rows"]))}`;
        more.textContent = `Show all ${Page.number(found)}`;
        more.hidden = chosen.length === found;
    }

    const heads = columns.map((column) => {
        const button = make("button", {
            type: "button", title: column.hint, onclick: () => {
                isDescending = sortKey === column.key ? !isDescending : column.kind === "number";
                sortKey = column.key;
                markHeads();
                fill();
            }
        }, column.title);
        return make("th", { scope: "col", class: column.kind === "number" ? "number" : null }, button);
    });
    function markHeads() {
        columns.forEach((column, i) => heads[i].setAttribute("aria-sort",
            column.key !== sortKey ? "none" : isDescending ? "descending" : "ascending"));
    }

    const search = make("input", {
        type: "search", class: "control", placeholder: "Search", "aria-label": "Search the table", oninput: () => {
            words = search.value.toLocaleLowerCase().split(/\s+/).filter((word) => word);
            fill();
        }
    });
    let wasWhole = isWhole;
    window.addEventListener("beforeprint", () => {
        wasWhole = isWhole;
        isWhole = true;
        fill();
    });
    window.addEventListener("afterprint", () => {
        isWhole = wasWhole;
        fill();
    });
    markHeads();
    fill();
    return make("div", { class: "table", id: options.id },
        options.search ? make("div", { class: "tools control" }, search, status) : null,
        make("div", { class: "wide", tabindex: "0", role: "region", "aria-label": options.label || "Table" },
            make("table", {}, make("thead", {}, make("tr", {}, heads)), body)),
        more);
};
