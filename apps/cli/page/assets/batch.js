// The page of a batch: a row for each row of its table, of which there may be a hundred thousand.
"use strict";
(() => {
    const { data, make, number, counted, name } = Page;
    const texts = data.texts;

    // "genesis8_1female" as people call it.
    function kindName(kind) {
        const parts = /^genesis(\d+)(?:_(\d+))?(female|male)?$/.exec(kind);
        return parts ? `Genesis\u00a0${parts[1]}${parts[2] ? "." + parts[2] : ""} ${parts[3] || ""}`.trim() : kind;
    }

    // As "batch_index.cpp" lists them.
    const rows = data.rows.map((cells) => ({
        row: cells[0], line: cells[1], name: cells[2], folder: texts[cells[3]], file: cells[4], kind: kindName(texts[cells[5]]),
        status: texts[cells[6]], mean: cells[7], p95: cells[8], max: cells[9], morphs: cells[10], leftOut: cells[11],
        seconds: cells[12], memory: cells[13], warningCount: cells[14], warnings: cells[15] || [], error: cells[16] || "",
        page: cells[17] || "", picture: cells[18] || ""
    }));
    const ofStatus = (status) => rows.filter((row) => row.status === status).length;
    const has = (key) => rows.some((row) => row[key] !== null && row[key] !== "" && row[key] !== 0);
    const source = (row) => row.folder ? row.folder + "/" + row.file : row.file;
    const statusNames = { done: "done", skipped: "done before", failed: "failed" };

    function duration(seconds) {
        const whole = Math.round(seconds);
        return seconds < 100 ? number(seconds, 1) + "\u00a0s"
            : whole < 7200 ? `${Math.floor(whole / 60)}\u00a0min ${whole % 60}\u00a0s`
                : `${Math.floor(whole / 3600)}\u00a0h ${Math.floor(whole % 3600 / 60)}\u00a0min`;
    }

    function share(values, part) {
        return values.length > 0 ? values[Math.min(values.length - 1, Math.floor(part * values.length))] : null;
    }

    const distances = rows.filter((row) => row.p95 !== null).map((row) => row.p95).sort((a, b) => a - b);

    function summary() {
        const failed = ofStatus("failed"), skipped = ofStatus("skipped"), done = ofStatus("done");
        const warned = rows.filter((row) => row.warningCount > 0).length;
        const morphs = rows.reduce((sum, row) => sum + (row.morphs || 0), 0);
        const tiles = [{ value: number(rows.length), label: rows.length === 1 ? "row" : "rows" },
            { value: number(done), label: "done" }];
        if (skipped > 0)
            tiles.push({ value: number(skipped), label: "done before" });
        tiles.push({ value: number(failed), label: "failed", isBad: failed > 0 });
        if (data.rowsNotBegun > 0)
            tiles.push({ value: number(data.rowsNotBegun), label: "not done yet", isBad: true });
        tiles.push({ value: number(warned), label: "with warnings" });
        if (morphs > 0)
            tiles.push({ value: number(morphs), label: morphs === 1 ? "morph made" : "morphs made" });
        if (distances.length > 0)
            tiles.push({ value: number(share(distances, 0.5), 3), unit: "mm", label: "95 % distance, median row" },
                { value: number(distances[distances.length - 1], 3), unit: "mm", label: "95 % distance, worst row" });
        if (data.seconds > 0)
            tiles.push({ value: duration(data.seconds), label: data.isOfRows ? "of all rows together" : "time" });
        Page.section("summary", "Summary", Page.tiles(tiles),
            data.wasInterrupted ? make("p", { class: "notice apart" }, `The batch was interrupted: ${counted(data.rowsNotBegun, "row was", "rows were")} not done.`) : null,
            data.warnings.length > 0 ? make("div", { class: "apart" }, Page.list(data.warnings)) : null);
    }

    function histogram() {
        if (distances.length < 2)
            return;
        // From zero to a round number that 99 of 100 rows do not exceed.
        const end = share(distances, 0.99) || distances[distances.length - 1] || 1;
        const power = Math.pow(10, Math.floor(Math.log10(end)));
        const top = [1, 1.5, 2, 3, 4, 5, 6, 8, 10].map((part) => part * power).find((value) => value >= end * 0.9999);
        const bars = 50, step = top / bars, counts = new Array(bars).fill(0);
        let beyond = 0;
        for (const value of distances) {
            const bar = Math.floor(value / step);
            if (bar < bars || value <= top)
                ++counts[Math.min(bar, bars - 1)];
            else
                ++beyond;
        }
        const marks = [{ value: share(distances, 0.5), label: "median" }];
        if (share(distances, 0.95) - marks[0].value > 0.25 * top) // or the texts would meet
            marks.push({ value: share(distances, 0.95), label: "95 % of rows" });
        Page.section("distances", "Distances", Page.histogram({ step, counts, what: "How many rows have which distance" }, marks),
        make("p", { class: "note" }, "Of each row that measures it, the distance between both surfaces that 95\u00a0% of the vertices "
            + "do not exceed.", beyond > 0 ? ` ${counted(beyond, "row lies", "rows lie")} beyond the right end.` : null));
    }

    const columns = [
        { key: "row", title: "Row", kind: "number" },
        { key: "name", title: "Name" },
        { key: "source", title: "Source", of: (row) => row.file },
        { key: "kind", title: "Kind", isWanted: () => has("kind") },
        { key: "status", title: "Status" },
        { key: "mean", title: "Mean, mm", kind: "number", decimals: 3, hint: "Mean distance of the surfaces", isWanted: () => has("p95") },
        { key: "p95", title: "95 %, mm", kind: "number", decimals: 3, hint: "What 95 % of the vertices do not exceed", isWanted: () => has("p95") },
        { key: "max", title: "Max, mm", kind: "number", decimals: 2, hint: "Largest distance", isWanted: () => has("p95") },
        { key: "morphs", title: "Morphs", kind: "number", hint: "Morphs made", isWanted: () => has("morphs") },
        { key: "seconds", title: "Seconds", kind: "number", decimals: 2, isWanted: () => has("seconds") },
        { key: "memory", title: "MiB", kind: "number", decimals: 0, hint: "Most memory that its process had", isWanted: () => has("memory") },
        { key: "warningCount", title: "Warnings", kind: "number" }
    ].filter((column) => !column.isWanted || column.isWanted());
    const valueOf = (column, row) => column.of ? column.of(row) : row[column.key];

    const perPage = 100, mostPrinted = 1000;
    const collator = new Intl.Collator(undefined, { numeric: true, sensitivity: "base" });
    const view = { order: "worst", isDescending: false, words: [], status: "", from: 0 };
    let haystacks = null, chosen = [];

    // Failed rows, then those whose surfaces lie farthest apart, then those with most warnings.
    function compareWorst(a, b) {
        return (b.status === "failed") - (a.status === "failed") || (b.p95 ?? -1) - (a.p95 ?? -1)
            || b.warningCount - a.warningCount || a.row - b.row;
    }

    // What is missing stands at the end, whichever way the rows run.
    function sorted(list) {
        const column = columns.find((one) => one.key === view.order);
        if (!column)
            return list.sort(compareWorst);
        const isMissing = (value) => value === null || value === "";
        const turn = view.isDescending ? -1 : 1;
        const keyed = list.map((row) => ({ row, value: valueOf(column, row) }));
        keyed.sort((a, b) => isMissing(a.value) || isMissing(b.value)
            ? isMissing(a.value) - isMissing(b.value) || a.row.row - b.row.row
            : turn * (column.kind === "number" ? a.value - b.value : collator.compare(a.value, b.value)) || a.row.row - b.row.row);
        return keyed.map((one) => one.row);
    }

    function choose() {
        // Made at the first search, since it takes a moment for many rows.
        if (view.words.length > 0 && haystacks === null)
            haystacks = new Map(rows.map((row) => [row,
                [row.name, source(row), row.kind, statusNames[row.status], row.error, ...row.warnings.map((i) => texts[i])].join("\n").toLocaleLowerCase()]));
        chosen = sorted(rows.filter((row) => (!view.status || (view.status === "warned" ? row.warningCount > 0 : row.status === view.status))
            && view.words.every((word) => haystacks.get(row).includes(word))));
        view.from = 0;
        show();
    }

    // Beneath the row, as wide as the table.
    function warningsOf(row) {
        if (row.warningCount === 0)
            return make("span", { class: "none" }, "0");
        const left = row.warningCount - row.warnings.length;
        let told = null;
        const button = make("button", {
            type: "button", class: "unfold", "aria-expanded": "false", title: "Show the warnings", onclick: () => {
                if (told) {
                    told.remove();
                    told = null;
                } else {
                    told = make("tr", { class: "told" }, make("td", { colspan: columns.length + 1 },
                        make("ul", { class: "lines" }, row.warnings.map((i) => make("li", {}, name(texts[i]))),
                            left > 0 ? make("li", {}, `${number(left)} more in the log`) : null)));
                    button.closest("tr").after(told);
                }
                button.setAttribute("aria-expanded", String(told !== null));
            }
        }, number(row.warningCount));
        return button;
    }

    function cellOf(column, row) {
        const value = valueOf(column, row);
        switch (column.key) {
        case "name":
            return [row.page ? make("a", { href: linkTo(row.page) }, name(row.name || "\u2013")) : name(row.name || "\u2013"),
                row.error ? make("p", { class: "error" }, name(row.error)) : null,
                row.leftOut > 0 ? make("p", { class: "note" }, `${counted(row.leftOut, "morph", "morphs")} left out`) : null];
        case "source":
            return [name(row.file), row.folder ? make("p", { class: "note" }, name(row.folder)) : null];
        case "status":
            return make("span", { class: "status " + row.status }, statusNames[row.status] || row.status);
        case "warningCount":
            return warningsOf(row);
        default:
            return column.kind !== "number" ? name(value || "\u2013")
                : value === null ? "\u2013" : number(value, column.decimals || 0);
        }
    }

    // A path below or beside this page, whatever is in its names.
    function linkTo(path) {
        const parts = path.split("/").map(encodeURIComponent).join("/");
        return parts.startsWith("..") ? parts : "./" + parts;
    }

    function pictureOf(row) {
        return make("td", { class: "picture" }, row.picture
            ? make("img", {
                src: "data:image/png;base64," + row.picture, height: data.pictureHeight, loading: "lazy",
                alt: `${row.name}: source, converted figure and their difference`
            }) : null);
    }

    const hasPictures = rows.some((row) => row.picture);
    const pictureHead = make("th", { scope: "col", class: "picture" }, make("span", { class: "unseen" }, "Picture"));
    const body = make("tbody");
    const count = make("p", { class: "note", role: "status" });
    const where = make("span", { class: "note where" });
    const turner = (title, step) => make("button", {
        type: "button", onclick: () => { view.from += step; show(); body.parentElement.scrollIntoView({ block: "start" }); }
    }, title);
    const before = turner("Before", -perPage), after = turner("Next", perPage);
    const pager = make("div", { class: "pager control" }, before, where, after);

    function show(most = perPage) {
        const shown = chosen.slice(view.from, view.from + most);
        const isPictured = shown.some((row) => row.picture);
        pictureHead.hidden = !isPictured;
        body.replaceChildren(...shown.map((row) => make("tr", { class: row.status === "failed" ? "failed" : null },
            isPictured ? pictureOf(row) : null,
            columns.map((column) => make("td", { class: column.kind === "number" ? "number" : column.key, "data-title": column.title },
                make("div", {}, cellOf(column, row)))))));
        count.textContent = chosen.length === rows.length ? counted(rows.length, "row", "rows")
            : `${number(chosen.length)} of ${counted(rows.length, "row", "rows")}`;
        where.textContent = chosen.length > 0 ? `${number(view.from + 1)} to ${number(view.from + shown.length)} of ${number(chosen.length)}` : "none";
        before.disabled = view.from === 0;
        after.disabled = view.from + perPage >= chosen.length;
        pager.hidden = chosen.length <= perPage;
    }

    const heads = columns.map((column) => make("th", { scope: "col", class: column.kind === "number" ? "number" : column.key },
        make("button", {
            type: "button", title: column.hint, onclick: () => {
                const isSame = view.order === column.key;
                setOrder(column.key, isSame ? !view.isDescending : column.kind === "number" && column.key !== "row");
            }
        }, column.title)));

    const order = make("select", { id: "order", onchange: () => {
        const column = columns.find((one) => one.key === order.value);
        setOrder(order.value, Boolean(column) && column.kind === "number" && column.key !== "row");
    } }, make("option", { value: "worst" }, "Worst first"), columns.map((column) => make("option", { value: column.key }, column.title)));

    function setOrder(key, isDescending) {
        view.order = key;
        view.isDescending = isDescending;
        order.value = key;
        columns.forEach((column, i) => heads[i].setAttribute("aria-sort",
            column.key !== key ? "none" : isDescending ? "descending" : "ascending"));
        choose();
    }

    function tools() {
        const search = make("input", { type: "search", id: "search", placeholder: "Search", "aria-label": "Search the rows", oninput: () => {
            view.words = search.value.toLocaleLowerCase().split(/\s+/).filter((word) => word);
            choose();
        } });
        const filters = [["", "All rows"], ["failed", "Failed"], ["done", "Done"], ["skipped", "Done before"], ["warned", "With warnings"]];
        const filter = make("select", { id: "filter", "aria-label": "Rows to show", onchange: () => {
            view.status = filter.value;
            choose();
        } }, filters.map(([value, text]) => make("option", { value }, text)));
        return make("div", { class: "tools control" }, search, filter, make("label", {}, "Order ", order), count);
    }

    function table() {
        const notes = [];
        if (hasPictures && data.droppedPictures > 0)
            notes.push(`Pictures of the ${number(data.mostPictures)} rows with the largest distances; the log has the others. `);
        if (data.untoldWarnings > 0)
            notes.push(`${counted(data.untoldWarnings, "warning stands", "warnings stand")} in the log alone. `);
        Page.section("rows", "Rows", tools(),
            hasPictures ? make("p", { class: "note caption" }, "Pictures show source, converted figure and their difference.") : null,
            hasPictures ? Page.legend(data.scale) : null,
            make("div", { class: "wide batch", tabindex: "0", role: "region", "aria-label": "Rows" },
                make("table", { id: "results" }, make("thead", {}, make("tr", {},
                    pictureHead, heads)), body)),
            pager, notes.length > 0 ? make("p", { class: "note" }, notes) : null);
        setOrder("worst", false);
        window.addEventListener("beforeprint", () => show(mostPrinted));
        window.addEventListener("afterprint", () => show());
    }

    function settings() {
        Page.section("settings", "Settings", data.command ? Page.command(data.command) : null,
            Page.facts([["Table", data.table ? name(data.table) : null], ...data.settings.map(([key, value]) => [key, name(value)]),
                ["Version", data.version], ["Date", data.date]]));
    }

    Page.header(data.title, [counted(rows.length, "row", "rows"), `, ${data.date}`]);
    summary();
    table();
    histogram();
    settings();
    Page.footer();
})();
