#!/usr/bin/env python3
"""Checks that every recursive rule of an ANTLR 3 grammar guards its nesting depth.

usage: check_recursion_guards.py GRAMMAR.g [GRAMMAR.g ...]

A rule is recursive when it can reach itself through rule references. Each
such rule must start with KP_GUARD_NESTING or KP_GUARD_TREE_NESTING in its
@init action, so that deeply nested input becomes a record instead of a stack
overflow. Prints the unguarded recursive rules and exits 1 if there are any.
"""
import re
import sys

GUARD = re.compile(r'\bKP_GUARD_(TREE_)?NESTING\s*\(')
HEADER_WORDS = {'parser', 'lexer', 'tree', 'grammar'}


def tokens(text):
    """Yields (kind, value): 'id', 'action' ({...} text), or the punctuation itself."""
    i, n = 0, len(text)
    while i < n:
        c = text[i]
        if c.isspace():
            i += 1
        elif text.startswith('//', i):
            i = text.find('\n', i)
            i = n if i < 0 else i
        elif text.startswith('/*', i):
            i = text.find('*/', i + 2)
            i = n if i < 0 else i + 2
        elif c == "'":
            i += 1
            while i < n and text[i] != "'":
                i += 2 if text[i] == '\\' else 1
            i += 1
            yield 'literal', None
        elif c in '{[':
            close = '}' if c == '{' else ']'
            depth, start = 0, i
            while i < n:
                d = text[i]
                if d in '"\'' and c == '{':
                    # A C string or character literal inside an action.
                    i += 1
                    while i < n and text[i] != d:
                        i += 2 if text[i] == '\\' else 1
                elif d == c:
                    depth += 1
                elif d == close:
                    depth -= 1
                    if depth == 0:
                        break
                i += 1
            i += 1
            yield ('action' if c == '{' else 'args'), text[start:i]
        elif c.isalpha() or c == '_':
            j = i
            while j < n and (text[j].isalnum() or text[j] == '_'):
                j += 1
            yield 'id', text[i:j]
            i = j
        else:
            yield c, c
            i += 1


def rules(text):
    """Returns {rule: (guarded, [referenced identifiers])}."""
    result = {}
    stream = list(tokens(text))
    i = 0
    while i < len(stream):
        kind, value = stream[i]
        if kind == 'id' and value in HEADER_WORDS or kind == 'id' and value == 'tokens':
            while i < len(stream) and stream[i][0] not in (';', 'action'):
                i += 1
            i += 1
        elif kind == '@' or (kind == 'id' and value in ('options', 'scope')):
            while i < len(stream) and stream[i][0] != 'action':
                i += 1
            i += 1
        elif kind == 'id':
            name, guarded = value, False
            i += 1
            while i < len(stream) and stream[i][0] != ':':
                if stream[i][0] == 'action' and GUARD.search(stream[i][1]):
                    guarded = True
                i += 1
            references = []
            i += 1
            while i < len(stream) and stream[i][0] != ';':
                k, v = stream[i]
                following = stream[i + 1][0] if i + 1 < len(stream) else None
                if k == 'id' and following not in ('=', '+'):
                    references.append(v)
                i += 1
            i += 1
            result[name] = (guarded, references)
        else:
            i += 1
    return result


def recursive_rules(table):
    """The rules that lie on a cycle of the reference graph (Tarjan's SCCs)."""
    graph = {r: [x for x in refs if x in table] for r, (_, refs) in table.items()}
    index, low, on_stack, stack, found = {}, {}, set(), [], set()
    counter = [0]

    def visit(root):
        work = [(root, iter(graph[root]))]
        index[root] = low[root] = counter[0]
        counter[0] += 1
        stack.append(root)
        on_stack.add(root)
        while work:
            node, children = work[-1]
            child = next(children, None)
            if child is None:
                work.pop()
                if work:
                    parent = work[-1][0]
                    low[parent] = min(low[parent], low[node])
                if low[node] == index[node]:
                    component = []
                    while True:
                        member = stack.pop()
                        on_stack.discard(member)
                        component.append(member)
                        if member == node:
                            break
                    if len(component) > 1 or node in graph[node]:
                        found.update(component)
            elif child not in index:
                index[child] = low[child] = counter[0]
                counter[0] += 1
                stack.append(child)
                on_stack.add(child)
                work.append((child, iter(graph[child])))
            elif child in on_stack:
                low[node] = min(low[node], index[child])

    for rule in graph:
        if rule not in index:
            visit(rule)
    return found


def main(paths):
    failed = False
    for path in paths:
        with open(path, encoding='utf-8') as f:
            table = rules(f.read())
        if not table:
            print('%s: no rules found' % path)
            failed = True
            continue
        recursive = recursive_rules(table)
        unguarded = sorted(r for r in recursive if not table[r][0])
        print('%s: %d rules, %d recursive, %d unguarded' % (path, len(table), len(recursive), len(unguarded)))
        for rule in unguarded:
            print('  recursive rule without a nesting guard: %s' % rule)
        failed = failed or bool(unguarded)
    return 1 if failed else 0


if __name__ == '__main__':
    sys.exit(main(sys.argv[1:]))
