"""Checks docs/model.schema.json against what `sqlantlr model` prints.

Usage: check_model_schema.py SQLANTLR SCHEMA CASES_DIR

Every golden case is run through the tool (compact and --pretty), and all
cases together as one merged model, whose records name their files. The
schema itself is checked first, and a few documents that break it must be
rejected, so a schema that accepts anything fails too.
"""
import glob
import json
import os
import subprocess
import sys

try:
    import jsonschema
except ImportError:
    sys.exit("the jsonschema module is missing: apt-get install python3-jsonschema")


def model(tool, *arguments):
    run = subprocess.run([tool, "model", *arguments], capture_output=True, text=True)
    if run.returncode != 0:
        sys.exit(f"sqlantlr model {' '.join(arguments)} exited {run.returncode}: {run.stderr}")
    return json.loads(run.stdout)


def main():
    tool, schema_path, cases_dir = sys.argv[1:4]
    with open(schema_path, encoding="utf-8") as file:
        schema = json.load(file)
    validator_class = jsonschema.validators.validator_for(schema)
    validator_class.check_schema(schema)
    validator = validator_class(schema)

    cases = sorted(glob.glob(os.path.join(cases_dir, "*.sql")))
    if not cases:
        sys.exit(f"no cases in {cases_dir}")
    failures = 0
    documents = [(case, model(tool, case)) for case in cases]
    documents += [(case + " --pretty", model(tool, "--pretty", case)) for case in cases]
    documents.append(("all cases merged", model(tool, *cases)))
    for name, document in documents:
        for error in validator.iter_errors(document):
            failures += 1
            print(f"{name}: {'/'.join(map(str, error.absolute_path))}: {error.message}")

    sample = documents[0][1]
    broken = [
        {**sample, "extra": 1},
        {"tables": [], "views": []},
        {**sample, "exceptions": ["no position"]},
        {**sample, "tables": [{"name": "t"}]},
    ]
    for document in broken:
        if validator.is_valid(document):
            failures += 1
            print(f"the schema accepts a broken document: {json.dumps(document)[:200]}")

    print(f"{len(documents)} documents checked, {failures} problem(s)")
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main())
