#!/usr/bin/env python3
"""Validates a JSON document against one definition of the schema of zotdamctl's output.

    validate.py DEFINITION DOCUMENT
    validate.py --list      prints the definitions of commands and of errors
"""
import json
import sys

import jsonschema

SCHEMA = 'schemas/zotdamctl.schema.json'


def read(path):
    with open(path, encoding='utf-8') as file:
        return json.load(file)


def main():
    schema = read(SCHEMA)
    if sys.argv[1:] == ['--list']:
        print('\n'.join(definition['$ref'].removeprefix('#/$defs/') for definition in schema['anyOf']))
        return
    definition, path = sys.argv[1:]
    assert definition in schema['$defs'], f'{SCHEMA} does not define {definition}'
    validator = jsonschema.validators.validator_for(schema)
    validator.check_schema(schema)
    document = read(path)
    validator({**schema, 'anyOf': [{'$ref': f'#/$defs/{definition}'}]}).validate(document)
    # The schema as a whole accepts each output.
    validator(schema).validate(document)


if __name__ == '__main__':
    main()
