"""Makes the tables out of what the benchmarks measured: table.py RESULTS_DIR [DOCS_DIR].

A benchmark is called ROW/SIDE or ROW/SIDE/SIZE, where the side "floor" is the least that Qt allows, "ours" is what is
compared with it, and any other side is shown for information. With DOCS_DIR, the tables replace those in its
performance.md, and the picture is drawn.
"""

import datetime
import json
import pathlib
import platform
import re
import statistics
import subprocess
import sys

# Row, what it is, the highest ratio of ours to the floor that is aimed at.
ROWS = [
    ("loading", "load the library, instance, catalogue; empty plugin", 1.3),
    ("loading_after_qml", "the same where Qt's QML module is loaded already", 1.3),
    ("order_plugin", "a getValue order, the plugin's part", 1.5),
    ("order_engine", "a getValue order, engine and board", 2),
    ("event_plugin", "a listening event, the plugin's part", 1.5),
    ("edge_plugin", "a listening event with an edge mode, the plugin's part", 1.5),
    ("event_engine", "a listening event, engine and board", 3),
    ("edge_engine", "a listening event with an edge mode, engine and board", 3),
    ("orders_at_once", "one of many orders at once; one alone", 1.3),
    ("listeners_on_lines", "one event of many listeners, a line each; one alone", 1.3),
    ("listeners_on_one_line", "one event of many listeners on one line; one alone", 1.3),
    ("model_append", "append a row; QStandardItemModel", 1),
    ("model_data", "data of a row; QStandardItemModel", 1),
    ("model_item", "item of a row; QStandardItemModel", 1),
    ("page_load", "load the page, a channel; bare page", 1.5),
    ("page_refresh", "refresh the page, a channel; bare page", 1.5),
    ("memory_channel", "heap of a channel; its Qt objects", 1.3),
    ("memory_order", "heap of a waiting order; its Qt objects", 1.3),
    ("memory_listener", "heap of a listener; its Qt objects", 1.3),
    ("trace", "write an event to a trace; the same bytes", 2),
]

# Rows whose cost of one item is drawn against the number of items.
DRAWN = ["orders_at_once", "listeners_on_lines", "model_append", "model_data", "model_item", "page_load", "page_refresh"]


class Series:
    """The measurements of one side of one row at one size, for one item each."""

    def __init__(self):
        self.values = []
        self.unit = "ns"

    def add(self, run):
        if "bytes" in run:
            self.values.append(run["bytes"])
            self.unit = "B"
        elif "items_per_second" in run:
            self.values.append(1e9 / run["items_per_second"])
        else:
            manual = run["name"].endswith("/manual_time")
            self.values.append(run["real_time"] if manual else run["cpu_time"])

    @property
    def median(self):
        return statistics.median(self.values)


def read(results):
    """All series by row, side and size (None without one)."""
    series = {}
    for file in sorted(pathlib.Path(results).glob("*.json")):
        for run in json.loads(file.read_text())["benchmarks"]:
            if run.get("run_type") != "iteration":
                continue
            if run.get("error_occurred"):
                sys.exit(f"{run['name']}: {run['error_message']}")
            row, side, *rest = run["run_name"].split("/")
            size = next((int(part) for part in rest if part.isdigit()), None)
            series.setdefault((row, side, size), Series()).add(run)
    return series


def shown(value, unit):
    if unit == "B":
        return f"{value:.0f} B"
    for factor, name in ((1e6, "ms"), (1e3, "µs")):
        if value >= factor:
            return f"{value / factor:.3g} {name}"
    return f"{value:.3g} ns"


def floor_of(series, row, size):
    return series.get((row, "floor", size)) or series.get((row, "floor", None))


def ratio_table(series):
    lines = ["| what; beside what | items | floor | min | median | max | ratio | aim | |", "|---|--:|--:|--:|--:|--:|--:|--:|---|"]
    known = [row for row, _, _ in ROWS]
    missing = {row for row, _, _ in series} ^ set(known)
    if missing:
        sys.exit(f"rows without a benchmark, or benchmarks without a row: {', '.join(sorted(missing))}")
    for row, what, aim in ROWS:
        for (_, side, size), ours in sorted(((key, value) for key, value in series.items() if key[0] == row),
                                            key=lambda item: (item[0][2] or 0, item[0][1])):
            if side == "floor":
                continue
            floor = floor_of(series, row, size)
            ratio = ours.median / floor.median
            judged = side == "ours"
            name = what if judged else f"… {side.replace('_', ' ')}, for comparison"
            verdict = ("met" if round(ratio, 2) <= aim else "**missed**") if judged else ""
            lines.append(f"| {name} | {size if size is not None else ''} | {shown(floor.median, floor.unit)} "
                         f"| {shown(min(ours.values), ours.unit)} | {shown(ours.median, ours.unit)} "
                         f"| {shown(max(ours.values), ours.unit)} | {ratio:.2f} "
                         f"| {f'≤ {aim}' if judged else ''} | {verdict} |")
    return lines


def growth_table(series):
    """How the cost of one item grows with the number of items."""
    lines = ["| what | items | of the plugin or engine | of the floor |", "|---|--:|--:|--:|"]
    for row, what, _ in ROWS:
        sizes = sorted(size for name, side, size in series if name == row and side == "ours" and size)
        if len(sizes) < 2 or (row, "floor", sizes[0]) not in series:
            continue
        for size in sizes[1:]:
            growth = [series[row, side, size].median / series[row, side, sizes[0]].median for side in ("ours", "floor")]
            lines.append(f"| {what.split(';')[0]} | {sizes[0]} to {size} | × {growth[0]:.2f} | × {growth[1]:.2f} |")
    return lines


def machine():
    cpuinfo = pathlib.Path("/proc/cpuinfo").read_text()
    model = re.search(r"model name\s*: (.*)", cpuinfo)
    compiler = subprocess.run(["c++", "--version"], capture_output=True, text=True, check=True).stdout.splitlines()[0]
    qt = subprocess.run(["dpkg-query", "-W", "-f=${Version}", "libqt5core5a"], capture_output=True, text=True, check=True)
    return (f"{datetime.date.today()}, {model.group(1) if model else 'unknown processor'}, "
            f"{len(re.findall(r'^processor', cpuinfo, re.M))} cores, Linux {platform.release()}, {compiler}, "
            f"Qt {qt.stdout.split('+')[0]}.")


def draw(series, file):
    import matplotlib

    matplotlib.use("Agg")
    from matplotlib import pyplot

    figure, axes = pyplot.subplots(2, 4, figsize=(13, 6.2), layout="constrained")
    for axis, row in zip(axes.flat, DRAWN):
        scale, unit = (1, "ns") if row.startswith("model") else (1e-3, "µs")
        for side, colour, marker in (("floor", "#8a939e", "s"), ("ours", "#1f5fd1", "o")):
            points = sorted((size or 1, value) for (name, which, size), value in series.items()
                            if name == row and which == side)
            if len(points) == 1:
                points = points * 2
            sizes = [size for size, _ in points]
            axis.plot(sizes, [value.median * scale for _, value in points], color=colour, marker=marker, markersize=5,
                      label="floor" if side == "floor" else "plugin, engine")
        if (row, "floor", None) in series:  # the floor is one item alone
            axis.axhline(series[row, "floor", None].median * scale, color="#8a939e", linestyle="--", linewidth=1)
        axis.set_xscale("log")
        axis.set_ylim(bottom=0)
        axis.set_title(row.replace("_", " "), fontsize=11)
        axis.grid(color="#e2e5ea", linewidth=0.8)
        axis.spines[["top", "right"]].set_visible(False)
        axis.set_xlabel("items")
        axis.set_ylabel(f"{unit} an item")
    for axis in axes.flat[len(DRAWN):]:
        axis.axis("off")
    handles, labels = axes.flat[len(DRAWN) - 1].get_legend_handles_labels()
    axes.flat[-1].legend(handles, labels, loc="center", frameon=False, fontsize=11)
    figure.savefig(file, dpi=110)


def save(tables, series, docs):
    page = docs / "performance.md"
    begin, end = "<!-- benchmarks/compare --save writes from here -->", "<!-- to here -->"
    text = page.read_text()
    before, _, rest = text.partition(begin)
    _, found, after = rest.partition(end)
    if not found:
        sys.exit(f'{page}: expected the lines "{begin}" and "{end}"')
    page.write_text(f"{before}{begin}\n{tables}\n{end}{after}")
    draw(series, docs / "pictures" / "cost_against_size.png")


def main():
    series = read(sys.argv[1])
    tables = "\n".join([machine(), "", *ratio_table(series), "",
                        "Growth of the cost of one item with the number of items:", "", *growth_table(series)])
    print(tables)
    if len(sys.argv) > 2:
        save(tables, series, pathlib.Path(sys.argv[2]))


main()
