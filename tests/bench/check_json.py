#!/usr/bin/python3
"""Checks what the bench writes and reads against the schemas in the folder docs.

    check_json.py DOCS                  answers each line of standard input with one: empty, or what is wrong with it.
                                        "configuration FILE" is a configuration, any other a line that the bench writes
    check_json.py DOCS DOCUMENT         checks the examples of a document, of which each type must have one
"""

import json
import re
import sys

import jsonschema


def schema_in(file):
    with open(file, encoding="utf-8") as stream:
        schema = json.load(stream)
    jsonschema.Draft202012Validator.check_schema(schema)
    return schema


def text_of(error):
    return f"{error.json_path}: {error.message}".replace("\n", " ")


class Checker:
    def __init__(self, docs):
        schema = schema_in(f"{docs}/json.schema.json")
        self.definitions = schema["$defs"]
        self.validators = {}
        for alternative in schema["oneOf"]:
            definition = self.definitions[alternative["$ref"].rpartition("/")[2]]
            validator = jsonschema.Draft202012Validator({**definition, "$defs": self.definitions})
            self.validators.setdefault(definition["properties"]["type"]["const"], []).append(validator)

    def problem(self, line):
        """What is wrong with a line; empty when it is right."""
        try:
            value = json.loads(line)
        except ValueError as error:
            return f"no JSON: {error}"
        if not isinstance(value, dict) or value.get("type") not in self.validators:
            return "no object of a known type"
        problems = []
        for validator in self.validators[value["type"]]:
            error = jsonschema.exceptions.best_match(validator.iter_errors(value))
            if error is None:
                return ""
            problems.append(text_of(error))
        return "; or ".join(problems)


def each_key_once(pairs):
    entries = dict(pairs)
    if len(entries) < len(pairs):
        raise ValueError("a key stands twice")
    return entries


class ConfigurationChecker:
    def __init__(self, docs):
        self.validator = jsonschema.Draft202012Validator(schema_in(f"{docs}/appvantor.schema.json"))

    def problem(self, file):
        """What is wrong with the configuration in a file; empty when it is right."""
        try:
            with open(file, encoding="utf-8-sig") as stream:
                value = json.load(stream, object_pairs_hook=each_key_once)
        except ValueError as error:
            return f"no JSON: {error}"
        error = next(self.validator.iter_errors(value), None)
        return text_of(error) if error else ""


def examples_of(document):
    with open(document, encoding="utf-8") as stream:
        for block in re.findall(r"^```json\n(.*?)^```$", stream.read(), re.DOTALL | re.MULTILINE):
            yield from block.splitlines()


def check_document(checker, document):
    problems = []
    types = set(checker.validators)
    for line in examples_of(document):
        problem = checker.problem(line)
        if problem:
            problems.append(f"{line}\n    {problem}")
        else:
            types.discard(json.loads(line)["type"])
    problems += [f'the type "{missing}" has no example' for missing in sorted(types)]
    print("\n".join(problems))
    return 1 if problems else 0


def main():
    checker = Checker(sys.argv[1])
    if len(sys.argv) > 2:
        return check_document(checker, sys.argv[2])
    configurations = ConfigurationChecker(sys.argv[1])
    for line in sys.stdin:
        kind, _, file = line.rstrip("\n").partition(" ")
        print(configurations.problem(file) if kind == "configuration" else checker.problem(line), flush=True)
    return 0


sys.exit(main())
