#!/usr/bin/env python3
"""Validates JSON documents against the schema of zotdamctl's output.

    validate.py             reads lines with a definition of the schema and the path of a document. Answers each with
                            "valid" or with the first rule that the document breaks.
    validate.py --list      prints the definitions of commands and of errors
"""
import json
import sys

import jsonschema

SCHEMA = 'schemas/zotdamctl.schema.json'


def read(path):
    with open(path, encoding='utf-8') as file:
        return json.load(file)


def problem_of(definition, path, schema, validator):
    """Returns a description of the first problem of the document, or None if it is valid."""
    if definition not in schema['$defs']:
        return f'{SCHEMA} does not define {definition}'
    try:
        document = read(path)
        validator({**schema, 'anyOf': [{'$ref': f'#/$defs/{definition}'}]}).validate(document)
        # The schema as a whole accepts each output.
        validator(schema).validate(document)
    except (ValueError, jsonschema.ValidationError) as error:
        return str(error).partition('\n')[0]
    return None


def main():
    schema = read(SCHEMA)
    if sys.argv[1:] == ['--list']:
        print('\n'.join(definition['$ref'].removeprefix('#/$defs/') for definition in schema['anyOf']))
        return
    validator = jsonschema.validators.validator_for(schema)
    validator.check_schema(schema)
    for line in sys.stdin:
        definition, path = line.rstrip('\n').split(' ', 1)
        print(problem_of(definition, path, schema, validator) or 'valid', flush=True)


if __name__ == '__main__':
    main()
