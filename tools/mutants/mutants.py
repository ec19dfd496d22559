#!/usr/bin/python3
"""Mutation testing: apply one small fault at a time to the library's sources,
rebuild only what changed, run the test programs that depend on the mutated
object, and record which test cases catch it.

  tools/mutants/mutants.py run [--seed N] [--count N] [--results FILE]
  tools/mutants/mutants.py report [--results FILE] [--json]
  tools/mutants/mutants.py self-check

Results are JSON lines, one per mutant; a rerun skips mutants already done for
the same sample and the same test sources.  See docs/testing.md.
"""
import argparse, fcntl, hashlib, json, os, random, re, shutil, signal, subprocess, sys, threading, time
from concurrent.futures import ThreadPoolExecutor
import xml.etree.ElementTree as ET

ROOT = os.path.dirname(os.path.dirname(os.path.dirname(os.path.abspath(__file__))))
FOLDERS = ["src/db", "src/store", "src/fukasi", "src/switch", "src/runtime",
           "src/legacy", "src/dispatch", "cli"]
TEST_FOLDERS = ["tests", "python"]
BUILD = os.path.join(ROOT, "build-mutants")
JOURNAL = os.path.join(BUILD, "mutant-in-progress.json")
WORKERS = int(os.environ.get("MUTANTS_JOBS", os.cpu_count() or 1))

# ---------------------------------------------------------------- operators
# Each operator: name -> (regex on the masked line, replacement of the match given
# the match and the original line; groups of the masked line index the original).
# Binary operators need spaces on both sides, which keeps template brackets,
# pointers and stream operators out.
def _swap(table):
    return lambda m, line: " " + table[m.group(1)] + " "

CMP = {"<": ">=", ">": "<=", "<=": "<", ">=": ">", "==": "!=", "!=": "=="}
LOGIC = {"&&": "||", "||": "&&"}
OPERATORS = {
    "cmp": (re.compile(r" (<=|>=|==|!=|<|>) "), _swap(CMP)),
    "logic": (re.compile(r" (&&|\|\|) "), _swap(LOGIC)),
    "int+1": (re.compile(r"(?<![\w.])\d+(?![\w.'])"), lambda m, line: str(int(m.group(0)) + 1)),
    "int-1": (re.compile(r"(?<![\w.])[1-9]\d*(?![\w.'])"), lambda m, line: str(int(m.group(0)) - 1)),
    "bool": (re.compile(r"\b(true|false)\b"), lambda m, line: "false" if m.group(0) == "true" else "true"),
    "negate": (re.compile(r"\b(if|while) \((.*)\)(?= \{$|$)"), lambda m, line: "%s (!(%s))" % (m.group(1), line[m.start(2):m.end(2)])),
    "drop": (re.compile(r"^\s*[A-Za-z_][\w:.>\-]*\(.*\);$"), lambda m, line: re.match(r"\s*", m.group(0)).group(0) + "{}"),
    # The first statement of a void function, where `return;` compiles.
    "return": (re.compile(r"^  (?!return\b)\S.*;$"), lambda m, line: "  return; " + line[2:]),
}
# Lines where a change is unlikely to compile or to mean anything.
SKIP_LINE = re.compile(r"^\s*(#|template\b|static_assert|case\b|enum\b|namespace\b|using\b)|\bconstexpr\b|\[\d+\]\s*[;={]")


def mask(line, in_block):
    """Blank out comments and string/char literals; return (masked, in_block)."""
    out, i, n = [], 0, len(line)
    while i < n:
        if in_block:
            j = line.find("*/", i)
            if j < 0:
                return "".join(out) + " " * (n - i), True
            out.append(" " * (j + 2 - i)); i = j + 2; in_block = False
        elif line.startswith("//", i):
            out.append(" " * (n - i)); break
        elif line.startswith("/*", i):
            in_block = True
        elif line[i] in "\"'":
            q, j = line[i], i + 1
            while j < n and line[j] != q:
                j += 2 if line[j] == "\\" else 1
            out.append(q + "_" * (min(j, n) - i - 1) + (q if j < n else "")); i = j + 1
        else:
            out.append(line[i]); i += 1
    return "".join(out), in_block


def masked_lines(lines):
    """(line, masked line, context) for each line of a file; the context says whether
    the line is inside a void function and whether it starts a statement."""
    in_block, in_void, prev = False, False, ";"
    for line in lines:
        masked, in_block = mask(line, in_block)
        if masked[:1].strip() and masked[:1] not in "{}":  # a definition at column 0
            in_void = bool(re.match(r"(static )?(inline )?void \S+\(", masked))
        yield line, masked, {"void": in_void, "starts": prev[-1:] in ";{}:",
                             "first": prev[:1].strip() != "" and prev.endswith("{")}
        if masked.strip():
            prev = masked.rstrip()


def line_sites(line, masked, context):
    """(op, occurrence, start, end, replacement) for every mutation of a masked line."""
    if not masked.strip() or SKIP_LINE.search(masked):
        return []
    sites = []
    for op, (rx, repl) in OPERATORS.items():
        if op in ("return", "drop") and not context["starts"] or op == "return" and not (context["void"] and context["first"]):
            continue
        for k, m in enumerate(rx.finditer(masked)):
            if op == "drop" and re.match(r"^\s*(return|else|delete)\b", masked):
                continue
            if op == "negate" and re.match(r"[\w:<>]+[\s*&]+\w+ = |.*;", m.group(2)):
                continue  # a declaration or init-statement in the condition
            sites.append((op, k, m.start(), m.end(), repl(m, line)))
    return sites


def apply_site(line, masked, site):
    op, k, start, end, repl = site
    return line[:start] + repl + line[end:]


def line_hash(text):
    return hashlib.sha1(text.strip().encode()).hexdigest()[:12]


def scan_file(rel):
    """Every mutant of one source file, named without line numbers."""
    with open(os.path.join(ROOT, rel)) as f:
        lines = f.read().split("\n")
    seen, out = {}, []
    for line, masked, context in masked_lines(lines):
        h = line_hash(line)
        dup = seen[h] = seen.get(h, -1) + 1  # n-th identical line in the file
        for site in line_sites(line, masked, context):
            op, k = site[0], site[1]
            out.append({"id": "%s:%s.%d:%s.%d" % (rel, h, dup, op, k), "file": rel,
                        "line_hash": h, "dup": dup, "op": op, "occ": k})
    return out


def source_files(folder):
    for base, _, names in os.walk(os.path.join(ROOT, folder)):
        for name in sorted(names):
            if name.endswith(".cpp"):
                yield os.path.relpath(os.path.join(base, name), ROOT)


def code_lines(rel):
    with open(os.path.join(ROOT, rel)) as f:
        return sum(1 for l in f if l.strip())


def draw_sample(seed, count):
    """Mutants drawn per folder in proportion to its code, reproducibly from the seed."""
    rng = random.Random(seed)
    files = {d: sorted(source_files(d)) for d in FOLDERS}
    size = {d: sum(code_lines(f) for f in fs) for d, fs in files.items()}
    total = sum(size.values()) or 1
    share = {d: count * size[d] / total for d in FOLDERS}
    want = {d: int(share[d]) for d in FOLDERS}
    for d in sorted(FOLDERS, key=lambda d: want[d] - share[d])[:count - sum(want.values())]:
        want[d] += 1  # largest remainders first, so the shares add up to count
    sample = []
    for d in FOLDERS:
        sites = [s for f in files[d] for s in scan_file(f)]
        sample += rng.sample(sites, min(len(sites), want[d]))
    return sample


def locate(mutant):
    """Current (line index, lines, mutated line) of a mutant, or None if its line is gone."""
    path = os.path.join(ROOT, mutant["file"])
    if not os.path.exists(path):
        return None
    with open(path) as f:
        lines = f.read().split("\n")
    dup = -1
    for i, (line, masked, context) in enumerate(masked_lines(lines)):
        if line_hash(line) != mutant["line_hash"]:
            continue
        dup += 1
        if dup != mutant["dup"]:
            continue
        for site in line_sites(line, masked, context):
            if site[0] == mutant["op"] and site[1] == mutant["occ"]:
                return i, lines, apply_site(line, masked, site)
    return None

# ---------------------------------------------------------------- the file on disk
def restore_leftover():
    """Put back a file left mutated by a killed run."""
    if os.path.exists(JOURNAL):
        with open(JOURNAL) as f:
            j = json.load(f)
        with open(os.path.join(ROOT, j["file"]), "w") as f:
            f.write(j["original"])
        os.remove(JOURNAL)
        print("restored %s left mutated by an interrupted run" % j["file"])


class Mutated:
    """Context: the source file holds the mutant only inside the with-block."""
    def __init__(self, rel, text):
        self.rel, self.text = rel, text

    def __enter__(self):
        path = os.path.join(ROOT, self.rel)
        with open(path) as f:
            self.original = f.read()
        with open(JOURNAL, "w") as f:
            json.dump({"file": self.rel, "original": self.original}, f)
        with open(path, "w") as f:
            f.write(self.text)

    def __exit__(self, *exc):
        with open(os.path.join(ROOT, self.rel), "w") as f:
            f.write(self.original)
        os.remove(JOURNAL)

# ---------------------------------------------------------------- build graph and tests
def sh(args, **kw):
    return subprocess.run(args, capture_output=True, text=True, **kw)


def configure():
    if not os.path.exists(os.path.join(BUILD, "build.ninja")):
        # A mutant in a layer relinks every test program above it: lld links them
        # several times faster than the default linker, ccache keeps the rest warm.
        extra = []
        if shutil.which("ld.lld"):
            extra += ["-D%s=-fuse-ld=lld" % v for v in
                      ("CMAKE_EXE_LINKER_FLAGS", "CMAKE_SHARED_LINKER_FLAGS", "CMAKE_MODULE_LINKER_FLAGS")]
        if shutil.which("ccache"):
            extra += ["-DCMAKE_C_COMPILER_LAUNCHER=ccache", "-DCMAKE_CXX_COMPILER_LAUNCHER=ccache"]
        r = sh(["cmake", "-S", ROOT, "-B", BUILD, "-G", "Ninja", "-DCMAKE_BUILD_TYPE=Debug",
                "-DCMAKE_CXX_FLAGS=-O0 -g0", "-DCMAKE_EXPORT_COMPILE_COMMANDS=ON"] + extra)
        if r.returncode:
            sys.exit(r.stdout + r.stderr)


def build(targets=()):
    return sh(["nice", "ninja", "-C", BUILD] + list(targets)).returncode == 0


def object_of(rel):
    """The ninja output compiled from a source file."""
    r = sh(["ninja", "-C", BUILD, "-t", "query", os.path.join(ROOT, rel)])
    outs = re.findall(r"^\s+(\S+\.o)$", r.stdout.split("outputs:")[-1], re.M) if "outputs:" in r.stdout else []
    return outs[0] if outs else None


def ctest_units(skip):
    """Test programs to run: gtest entries of one executable merge into one unit."""
    r = sh(["ctest", "--test-dir", BUILD, "-N", "--show-only=json-v1"])
    units = {}
    for t in json.loads(r.stdout).get("tests", []):
        cmd = t.get("command") or []
        if not cmd or re.search(skip, t["name"]):
            continue
        props = {p["name"]: p["value"] for p in t.get("properties", [])}
        gtest = any(a.startswith("--gtest_filter") for a in cmd)
        name = os.path.basename(cmd[0]) if gtest else t["name"]
        units.setdefault(name, {"name": name, "cmd": [a for a in cmd if not a.startswith(("--gtest_filter", "--gtest_also_run"))],
                                "cwd": props.get("WORKING_DIRECTORY", BUILD),
                                "env": props.get("ENVIRONMENT", [])})
    return list(units.values())


def linked_outputs():
    """Executables and libraries the build links: path -> rule."""
    r = sh(["ninja", "-C", BUILD, "-t", "targets", "all"])
    pairs = (l.rsplit(": ", 1) for l in r.stdout.splitlines() if ": " in l)
    return {p: rule for p, rule in pairs if "LINKER" in rule}


def unit_inputs(unit, outputs):
    """Build outputs a unit depends on (transitively), or None if it names none.
    A path in its command or environment names a linked output, or a folder of them
    (PYTHONPATH names the folder of the Python module)."""
    cands = set()
    for a in unit["cmd"] + [e.split("=", 1)[-1] for e in unit["env"]]:
        for p in re.split(r"[:=]", a):
            p = os.path.relpath(p, BUILD) if os.path.isabs(p) else p
            if p in ("", ".") or p.startswith(".."):
                continue
            cands |= {o for o in outputs if o == p or o.startswith(p.rstrip("/") + "/")}
    if not cands:
        return None
    unit["targets"] = sorted(cands)
    r = sh(["ninja", "-C", BUILD, "-t", "inputs"] + unit["targets"])
    return set(r.stdout.split()) | cands


RUNNING = {}  # pid -> Popen of the test programs now running
STOPPING = threading.Event()  # set on an interrupt or, in quick runs, at the first kill


def stop_running():
    STOPPING.set()
    for pid in list(RUNNING):
        try:
            os.killpg(pid, signal.SIGKILL)
        except ProcessLookupError:
            pass


def run_unit(unit, timeout, tag):
    """Run one unit; return (failed case names, seconds, timed_out, all case names)."""
    if STOPPING.is_set():
        return [], 0.0, False, []
    report = os.path.join(BUILD, "mutants-%s.out" % tag)
    if os.path.exists(report):
        os.remove(report)
    env = dict(os.environ)
    env.update(e.split("=", 1) for e in unit["env"] if "=" in e)
    env["PYTEST_ADDOPTS"] = (env.get("PYTEST_ADDOPTS", "") + " --junitxml=" + report).strip()
    cmd = list(unit["cmd"])
    is_gtest = unit["name"] == os.path.basename(cmd[0])
    if is_gtest:
        cmd.append("--gtest_output=json:" + report)
    t0 = time.time()
    p = subprocess.Popen(cmd, cwd=unit["cwd"], env=env, stdin=subprocess.DEVNULL,
                         stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, start_new_session=True)
    RUNNING[p.pid] = p
    try:
        p.wait(timeout)
    except subprocess.TimeoutExpired:
        return [unit["name"]], time.time() - t0, True, []
    finally:
        if p.poll() is None:  # timeout or Ctrl-C: the whole process group goes
            os.killpg(p.pid, signal.SIGKILL)
            p.wait()
        del RUNNING[p.pid]
    if STOPPING.is_set():  # stopped from outside: says nothing about the mutant
        return [], time.time() - t0, False, []
    secs = time.time() - t0
    cases, failed = parse_report(unit["name"], report)
    if not cases:
        cases = [unit["name"]]
        failed = [unit["name"]] if p.returncode else []
    elif p.returncode and not failed:
        failed = [unit["name"]]
    return failed, secs, False, cases


def run_units(units, limit, tag, first_kill=False, first=frozenset()):
    """Run units side by side, as ctest -j does, slowest first so the longest one
    does not start last; returns [(unit, run_unit's answer)] in the units' order.
    With first_kill the others are stopped once one unit fails; the units named in
    `first` start before the rest."""
    def one(u):
        answer = run_unit(u, limit(u), "%s-%s" % (tag, u["name"]))
        if first_kill and answer[0]:
            stop_running()
        return answer
    order = sorted(units, key=lambda u: (u["name"] not in first, -u.get("seconds", 0)))
    with ThreadPoolExecutor(WORKERS) as pool:
        answers = {u["name"]: pool.submit(one, u) for u in order}
        results = [(u, answers[u["name"]].result()) for u in units]
    if first_kill:
        STOPPING.clear()
    return results


def parse_report(name, path):
    if not os.path.exists(path):
        return [], []
    with open(path) as f:
        text = f.read()
    cases, failed = [], []
    if text.lstrip().startswith("{"):
        for suite in json.loads(text).get("testsuites", []):
            for c in suite.get("testsuite", []):
                n = "%s:%s.%s" % (name, suite["name"], c["name"])
                cases.append(n)
                if c.get("failures"):
                    failed.append(n)
    else:
        for c in ET.fromstring(text).iter("testcase"):
            n = "%s:%s.%s" % (name, c.get("classname"), c.get("name"))
            cases.append(n)
            if c.find("failure") is not None or c.find("error") is not None:
                failed.append(n)
    return cases, failed

# ---------------------------------------------------------------- the run
def tests_key():
    h = hashlib.sha1()
    for d in TEST_FOLDERS:
        for base, dirs, names in sorted(os.walk(os.path.join(ROOT, d))):
            dirs.sort()
            for n in sorted(names):
                if "__pycache__" in base:
                    continue
                p = os.path.join(base, n)
                h.update(p.encode())
                with open(p, "rb") as f:
                    h.update(f.read())
    return h.hexdigest()[:12]


def load_results(path):
    if not os.path.exists(path):
        return []
    with open(path) as f:
        return [json.loads(l) for l in f if l.strip()]


def sample_for(seed, count):
    """The drawn sample is kept so that later source edits show up as 'gone' mutants."""
    path = os.path.join(BUILD, "mutants-sample-%d-%d.json" % (seed, count))
    if not os.path.exists(path):
        with open(path, "w") as f:
            json.dump(draw_sample(seed, count), f, indent=0)
    with open(path) as f:
        return json.load(f)


def baseline(units, tkey):
    """Run everything unmutated once: times, case lists, and tests already failing."""
    path = os.path.join(BUILD, "mutants-baseline-%s.json" % tkey)
    if os.path.exists(path):
        with open(path) as f:
            return json.load(f)
    base = {"units": {}, "excluded": []}
    for u, (failed, secs, _, cases) in run_units(units, lambda u: 3600, "base"):
        base["units"][u["name"]] = {"seconds": secs, "cases": cases}
        base["excluded"] += failed
        print("baseline %-40s %6.1fs %s" % (u["name"], secs, "FAILS: %s" % failed if failed else ""))
    with open(path, "w") as f:
        json.dump(base, f)
    return base


def hold_build_folder():
    """One run at a time per build folder: two would mutate the same sources."""
    os.makedirs(BUILD, exist_ok=True)
    lock = open(os.path.join(BUILD, "mutants.lock"), "w")
    try:
        fcntl.flock(lock, fcntl.LOCK_EX | fcntl.LOCK_NB)
    except BlockingIOError:
        sys.exit("another mutants run is using " + BUILD)
    return lock


def run(args):
    lock = hold_build_folder()  # noqa: F841 (held until the run ends)
    restore_leftover()
    configure()
    if not build():
        sys.exit("the unmutated tree does not build")
    tkey = tests_key()
    units = ctest_units(args.skip)
    base = baseline(units, tkey)
    for u in units:
        u["seconds"] = base["units"].get(u["name"], {}).get("seconds", 0)
    outputs = linked_outputs()
    deps = {u["name"]: unit_inputs(u, outputs) for u in units}
    sample = sample_for(args.seed, args.count)
    done = {r["id"] for r in load_results(args.results) if r["tests_key"] == tkey and r["seed"] == args.seed}
    before = {r["id"]: r.get("failed") or [] for r in load_results(args.order_from)} if args.order_from else {}
    todo = [m for m in sample if m["id"] not in done]
    print("%d mutants, %d done before, tests key %s" % (len(sample), len(sample) - len(todo), tkey))
    for i, m in enumerate(todo, 1):
        # In a quick run the programs that killed this mutant in an earlier run go first.
        killers = frozenset(t.split(":", 1)[0] for t in before.get(m["id"], []))
        rec = run_mutant(m, units, deps, base, args.first_kill, killers)
        rec.update(seed=args.seed, tests_key=tkey)
        with open(args.results, "a") as f:
            f.write(json.dumps(rec) + "\n")
        print("[%d/%d] %-10s %5.1fs %s %s" % (i, len(todo), rec["status"], rec["seconds"], m["id"],
                                             rec.get("after", "").strip()[:60]), flush=True)
    report(args)


def run_mutant(m, units, deps, base, first_kill, first):
    t0 = time.time()
    rec = {"id": m["id"], "file": m["file"], "op": m["op"]}
    found = locate(m)
    if found is None:
        return dict(rec, status="gone", seconds=0.0)
    i, lines, after = found
    rec.update(line=i + 1, before=lines[i], after=after)
    obj = object_of(m["file"])
    mine = [u for u in units if deps[u["name"]] is None or obj is None or obj in deps[u["name"]]]
    mutated = lines[:i] + [after] + lines[i + 1:]
    # Rebuild only the covering test programs; a test naming no build output needs everything.
    everything = any("targets" not in u for u in mine)
    targets = [] if everything else sorted({t for u in mine for t in u["targets"]})
    with Mutated(m["file"], "\n".join(mutated)):
        if mine and not build(targets):
            return dict(rec, status="did not build", seconds=time.time() - t0)
        failed, timeout = [], False
        limit = lambda u: 3 * base["units"].get(u["name"], {"seconds": 600})["seconds"] + 10
        for u, (f, _, to, _) in run_units(mine, limit, "mut", first_kill, first):
            failed += [x for x in f if x not in base["excluded"]]
            timeout |= to
    status = "timeout" if timeout else "killed" if failed else "survived"
    return dict(rec, status=status, failed=failed, ran=[u["name"] for u in mine], seconds=time.time() - t0,
                first_kill=first_kill)

# ---------------------------------------------------------------- the report
def summarize(records, base):
    latest = {}
    for r in records:
        latest[r["id"]] = r
    recs = list(latest.values())
    counts = {s: sum(1 for r in recs if r["status"] == s)
              for s in ("killed", "survived", "did not build", "gone", "timeout")}
    decided = counts["killed"] + counts["survived"] + counts["timeout"]
    kills, alone, thin = {}, {}, []
    for r in recs:
        f = [] if r.get("first_kill") else r.get("failed") or []  # a stopped run names only one
        for t in f:
            kills[t] = kills.get(t, 0) + 1
        if len(f) == 1:
            alone[f[0]] = alone.get(f[0], 0) + 1
        elif 2 <= len(f) <= 3:
            # "alone" cannot show that cutting all of these loses the mutant.
            thin.append({"mutant": r["id"], "killers": sorted(f)})
    cases = sorted({c for u in base.get("units", {}).values() for c in u["cases"]} | set(kills))
    per_test = [{"test": c, "kills": kills.get(c, 0), "alone": alone.get(c, 0)} for c in cases]
    return {"counts": counts, "mutants": len(recs),
            "kill_rate": round((counts["killed"] + counts["timeout"]) / decided, 3) if decided else None,
            "seconds_per_mutant": round(sum(r["seconds"] for r in recs) / len(recs), 1) if recs else None,
            "excluded": base.get("excluded", []), "tests": per_test,
            "cut_candidates": [t["test"] for t in per_test if t["alone"] == 0],
            "thin": thin,
            "survivors": [{k: r.get(k) for k in ("file", "line", "op", "before", "after")}
                          for r in recs if r["status"] == "survived"]}


def report(args):
    recs = load_results(args.results)
    if not recs:
        sys.exit("no results in " + args.results)
    tkey = recs[-1]["tests_key"]
    recs = [r for r in recs if r["tests_key"] == tkey]
    bpath = os.path.join(BUILD, "mutants-baseline-%s.json" % tkey)
    base = json.load(open(bpath)) if os.path.exists(bpath) else {}
    s = summarize(recs, base)
    if args.json:
        print(json.dumps(s, indent=1))
        return
    print("\n%d mutants (tests key %s): " % (s["mutants"], tkey)
          + ", ".join("%d %s" % (n, k) for k, n in s["counts"].items()))
    print("kill rate %s   %s s per mutant" % (s["kill_rate"], s["seconds_per_mutant"]))
    if s["excluded"]:
        print("excluded (fail unmutated): " + ", ".join(s["excluded"]))
    print("\n%6s %6s  test case" % ("kills", "alone"))
    for t in sorted(s["tests"], key=lambda t: (-t["alone"], -t["kills"], t["test"])):
        print("%6d %6d  %s" % (t["kills"], t["alone"], t["test"]))
    print("\nalone kill none (%d, candidates to cut):" % len(s["cut_candidates"]))
    for t in s["cut_candidates"]:
        print("  " + t)
    print("\nkilled by two or three cases only (%d; keep one of each):" % len(s["thin"]))
    for t in s["thin"]:
        print("  %s\n    %s" % (t["mutant"], "\n    ".join(t["killers"])))
    print("\nsurvivors (%d):" % len(s["survivors"]))
    for v in s["survivors"]:
        print("  %s:%s [%s]\n    - %s\n    + %s" % (v["file"], v["line"], v["op"], v["before"].strip(), v["after"].strip()))


def self_check(args):
    """Apply and restore a few mutants of a small sample; the tree must come back unchanged."""
    lock = hold_build_folder()  # noqa: F841
    restore_leftover()
    for m in draw_sample(args.seed, 12):
        found = locate(m)
        assert found, m["id"]
        i, lines, after = found
        before = open(os.path.join(ROOT, m["file"])).read()
        with Mutated(m["file"], "\n".join(lines[:i] + [after] + lines[i + 1:])):
            assert open(os.path.join(ROOT, m["file"])).read() != before
        assert open(os.path.join(ROOT, m["file"])).read() == before
        print("ok %-60s %s" % (m["id"], after.strip()[:50]))


def interrupt(*_):
    stop_running()  # so the mutated file is put back now, not when the tests end
    raise KeyboardInterrupt


def main():
    ap = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    ap.add_argument("command", choices=["run", "report", "self-check"], nargs="?", default="run")
    ap.add_argument("--seed", type=int, default=20261125)
    ap.add_argument("--count", type=int, default=300)
    ap.add_argument("--results", default=os.path.join(BUILD, "mutants.jsonl"))
    ap.add_argument("--json", action="store_true")
    ap.add_argument("--first-kill", action="store_true",
                    help="stop a mutant's tests at its first failure: kill rate only, no per-test counts")
    ap.add_argument("--order-from", metavar="RESULTS",
                    help="an earlier run's results: the programs that killed a mutant then run first")
    ap.add_argument("--skip", default="^package_examples$",
                    help="ctest names not run (default: the install-and-build-a-client test)")
    args = ap.parse_args()
    signal.signal(signal.SIGTERM, interrupt)
    signal.signal(signal.SIGINT, interrupt)
    try:
        {"run": run, "report": report, "self-check": self_check}[args.command](args)
    except KeyboardInterrupt:
        sys.exit("interrupted; the source file is restored, rerun to resume")


if __name__ == "__main__":
    main()
