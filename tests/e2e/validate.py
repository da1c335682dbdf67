#!/usr/bin/env python3
"""Holds JSON documents against the schemas of docs/schema.

    validate.py SCHEMAS NAME=DOCUMENT…

The schemas themselves are checked as well: that they are schemas, and that each object in them says
which of its fields there always are and allows no other. Prints what it finds, and fails if it
finds anything.
"""

import json
import pathlib
import sys
import warnings

warnings.simplefilter("ignore", DeprecationWarning)
import jsonschema  # noqa: E402


def loaded(folder):
    return {path.name: json.loads(path.read_text()) for path in sorted(folder.glob("*.json"))}


def objects(schema, place):
    """Each object in a schema that has fields."""
    if isinstance(schema, list):
        for index, part in enumerate(schema):
            yield from objects(part, f"{place}/{index}")
    elif isinstance(schema, dict):
        if schema.get("type") == "object":
            yield place, schema
        for key, part in schema.items():
            yield from objects(part, f"{place}/{key}")


def faults_of_schemas(schemas):
    for name, schema in schemas.items():
        try:
            jsonschema.Draft202012Validator.check_schema(schema)
        except jsonschema.SchemaError as error:
            yield f"{name}: {error.message}"
        for place, part in objects(schema, name):
            if "additionalProperties" not in part:
                yield f"{place}: says nothing of other fields"
            if "properties" in part and not {"required", "minProperties", "oneOf"} & part.keys():
                yield f"{place}: does not say which fields there always are"


def faults_of_document(schemas, name, path):
    resolver = jsonschema.RefResolver(name + ".json", schemas[name + ".json"], store=schemas)
    validator = jsonschema.Draft202012Validator(schemas[name + ".json"], resolver=resolver)
    for error in validator.iter_errors(json.loads(pathlib.Path(path).read_text())):
        yield f"{pathlib.Path(path).name}: {error.json_path}: {error.message[:500]}"


def main(folder, documents):
    schemas = loaded(pathlib.Path(folder))
    findings = list(faults_of_schemas(schemas))
    for document in documents:
        findings += faults_of_document(schemas, *document.split("=", 1))
    for finding in findings:
        print(finding)
    return 1 if findings else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1], sys.argv[2:]))
