// The page of a library's morphs.
"use strict";
(() => {
    const { data, make, number, counted, name } = Page;
    const report = data.report, settings = data.settings;

    function summary() {
        const created = report.created.length, skipped = report.skipped.length;
        const largest = Math.max(0, ...report.created.map((morph) => morph.largest_displacement_mm));
        Page.section("summary", "Summary", Page.tiles([
            { value: number(created), label: created === 1 ? "morph converted" : "morphs converted" },
            { value: number(skipped), label: "not converted", isBad: skipped > 0 },
            { value: number(largest, 1), unit: "mm", label: "largest displacement" },
            { value: number(report.warnings.length), label: report.warnings.length === 1 ? "warning" : "warnings", isBad: report.warnings.length > 0 },
            { value: number(report.seconds.total, report.seconds.total < 10 ? 2 : 1), unit: "s", label: "time" }]));
    }

    function stills() {
        if (!data.stills || data.stills.length === 0)
            return;
        const cards = data.stills.map((still) => make("figure", {}, make("div", { class: "pair" },
            make("img", { src: still.source, width: 240, height: 240, alt: `${still.label || still.name} on the source` }),
            make("img", { src: still.made, width: 240, height: 240, alt: `${still.label || still.name} on the target` })),
        make("figcaption", {}, name(still.label || still.name), make("span", { class: "note" },
            `${number(still.largest, 2)}\u00a0mm at most; colours to ${Page.exact(still.top)}\u00a0mm`))));
        const told = data.stills.length === data.converted ? "All morphs"
            : `The ${counted(data.stills.length, "morph", "morphs")} with the largest displacements, of ${number(data.converted)}`;
        Page.section("pictures", "Pictures", make("p", { class: "note above" },
            `${told}: on the source to the left, on the target to the right, both of the base mesh, at one scale, and coloured by how far `
            + "each vertex is moved, from light for nothing to dark for the number below."), make("div", { class: "pairs" }, cards));
    }

    function turn() {
        if (!data.figure)
            return;
        const left = data.converted - data.carried;
        const note = left > 0 ? `The page carries the ${number(data.carried)} morphs with the largest displacements; `
            + `${counted(left, "smaller one is", "smaller ones are")} left out to keep it small.` : null;
        const kept = settings.resolution === "base" ? null : "The figure is the base mesh; the detail of the morphs is not on it.";
        Page.section("turn", "The figure", Page.viewer(data.figure), note || kept ? make("p", { class: "note" }, note, " ", kept) : null);
    }

    // All morphs of a run are saved into one folder.
    function folderOf(file) {
        return file.slice(0, file.lastIndexOf("/") + 1);
    }

    function table() {
        const folder = report.created.length > 0 ? folderOf(report.created[0].file) : "";
        const rows = report.created.map((morph) => ({
            ...morph, strength: settings.value, notes: morph.notes.join("; "), drivers: morph.drivers.join(", "),
            file: morph.file.startsWith(folder) ? morph.file.slice(folder.length) : morph.file
        }));
        const columns = [
            { key: "name", title: "Name" }, { key: "label", title: "Label" }, { key: "source", title: "Morph of the source" },
            { key: "strength", title: "Strength", kind: "number", decimals: 2, hint: "Value of the source\u2019s dial at which it is taken" },
            { key: "path", title: "Group" }, { key: "region", title: "Region" },
            { key: "vertices_moved", title: "Vertices", kind: "number", hint: "Vertices of the base mesh that it moves" },
            { key: "largest_displacement_mm", title: "Largest, mm", kind: "number", decimals: 2, hint: "Largest displacement" }];
        if (rows.some((row) => row.detail_vertices_moved > 0))
            columns.push({ key: "detail_vertices_moved", title: "Detail", kind: "number", hint: "Vertices of the subdivided meshes that it moves" });
        if (rows.some((row) => row.drivers))
            columns.push({ key: "drivers", title: "Driven by" });
        if (rows.some((row) => row.notes))
            columns.push({ key: "notes", title: "Notes" });
        columns.push({ key: "file", title: "File", kind: "code" });
        Page.section("morphs", "Morphs", Page.table(columns, rows,
            { id: "made", search: true, label: "Morphs converted", what: ["morph", "morphs"] }),
        folder ? make("p", { class: "note" }, "The files are in ", name(folder)) : null);
    }

    function skipped() {
        Page.section("skipped", "Not converted", report.skipped.length === 0 ? make("p", {}, "None.")
            : Page.table([{ key: "name", title: "Morph of the source" }, { key: "reason", title: "Reason" }], report.skipped,
                { id: "left", search: report.skipped.length > 10, label: "Morphs not converted", what: ["morph", "morphs"] }));
    }

    function others() {
        Page.section("warnings", "Warnings", report.warnings.length > 0 ? Page.list(report.warnings) : make("p", {}, "None."));
        Page.section("times", "Times", Page.table([
            { key: "step", title: "Step" }, { key: "seconds", title: "Seconds", kind: "number", decimals: 3 }],
        report.seconds.steps, { id: "steps", label: "Times" }));
        Page.section("settings", "Settings", Page.command(settings.command), Page.facts([
            ["Source", [name(report.source), make("br"), name(settings.sourceFile)]],
            ["Target", [name(report.target), make("br"), name(settings.targetFile)]],
            ["Strength", number(settings.value, 2)], ["Resolution", settings.resolution],
            ["Controllers", settings.controllers ? "converted" : "taken with what they drive"],
            ["Correctives", settings.correctives ? "converted" : "left alone"],
            ["Peak memory", number(report.peak_memory_mib) + "\u00a0MiB"], ["Version", data.version], ["Date", data.date]]));
    }

    Page.header(data.title, [name(report.source), " \u2192 ", name(report.target), `, ${data.date}`]);
    summary();
    stills();
    turn();
    table();
    skipped();
    others();
    Page.footer();
})();
