// The style sheet of the report.
#pragma once

namespace ZOTDam::Client {

inline constexpr char PageStyle[] = R"(
:root { color-scheme: light dark; --text: #1b1b1f; --quiet: #5c5f66; --page: #fff; --line: #d6d8dd;
    --head: #f2f3f5; --bar: #3568c9; --track: #e1e4ea; --changed: #fff1d6; --mark: #9a5b00; }
@media (prefers-color-scheme: dark) {
    :root { --text: #e6e6ea; --quiet: #a3a6ad; --page: #17181b; --line: #3a3d44; --head: #22242a;
        --bar: #7fa6f2; --track: #343843; --changed: #3d3113; --mark: #f2c063; }
}
body { margin: 2em auto; max-width: 80em; padding: 0 1em; background: var(--page); color: var(--text);
    font: 15px/1.45 system-ui, "Segoe UI", sans-serif; }
h1 { font-size: 1.6em; } h2 { font-size: 1.2em; margin: 2em 0 .6em; }
table { border-collapse: collapse; }
th, td { border: 1px solid var(--line); padding: .35em .7em; text-align: left; vertical-align: top; }
thead th, .group th { background: var(--head); }
.facts th { background: var(--head); font-weight: normal; color: var(--quiet); }
.wide { overflow-x: auto; }
.scheme, .source, .id, .default, .place { color: var(--quiet); font-size: .85em; font-weight: normal; }
.scheme, .source, .default { display: block; }
.changed { background: var(--changed); }
.changed .label { font-weight: bold; }
.changed .label::after { content: " \25c6"; color: var(--mark); }
.bar { display: block; width: 6em; height: .4em; margin-top: .3em; border-radius: .2em; background: var(--track);
    overflow: hidden; }
.bar span { display: block; height: 100%; background: var(--bar); }
.place { overflow-wrap: anywhere; }
code { font: .9em ui-monospace, Consolas, monospace; overflow-wrap: anywhere; }
@media print {
    @page { size: landscape; margin: 12mm; }
    :root { --text: #000; --quiet: #444; --page: #fff; --line: #999; --head: #eee; --bar: #333; --track: #ddd;
        --changed: #eee; --mark: #000; }
    body { margin: 0; max-width: none; font-size: 9pt; }
    .wide { overflow: visible; }
    tr { break-inside: avoid; }
    .bar, .bar span, .changed, th { print-color-adjust: exact; -webkit-print-color-adjust: exact; }
}
)";

}  // namespace ZOTDam::Client
