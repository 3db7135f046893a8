# %% [markdown]
# # How wide is a spacer?
# A study step by step: one run, what it measures, many runs, and what they tell. Each `%%` begins a
# cell for editors that know notebooks; `python3 spacer_notebook.py` runs all of it.

# %%
import pathlib

import zelmo
from zelmo.studies import RunNumbers

here = pathlib.Path(__file__).parent if "__file__" in globals() else pathlib.Path.cwd()

# %% [markdown]
# ## One run
# The process has two variables, `THICKNESS` of the film and `ETCH`, how deep it is etched.

# %%
run = zelmo.Run(here / "spacer.gds", here / "spacer.txt", set={"THICKNESS": 100, "ETCH": 120})
run.run()
print(run.layers.names)

# %% [markdown]
# The section through the gate's right half, and the spacer's width 20 nm above the substrate:

# %%
section = run.section(1.0, 0.2, 1.5, 0.2)
section

# %%
one = RunNumbers(run).layer("Spacer").width(1, 0.2, 2, 0.2, at=20)
print(f"one spacer: {1000 * one:.0f} nm")

# %% [markdown]
# ## Many runs
# The same as a study: every combination of three films and seven etches. What the variants have in
# common, here everything up to the film, is executed once.

# %%
result = zelmo.study(
    {
        "study": {"layout": str(here / "spacer.gds"), "process": str(here / "spacer.txt")},
        "parameters": {
            "THICKNESS": [60, 100, 140],
            "ETCH": {"start": 60, "stop": 240, "step": 30},
        },
        "measures": {
            "foot": 'width("Spacer", 1, 0.2, 2, 0.2, at=20)',
            "left_over": 'thickness("Spacer", 1.9, 0.2)',
        },
    },
    output=here / "spacer notebook results",
    workers=2,
    quiet=True,
)
frame = result.frame
print(frame)

# %% [markdown]
# ## What they tell
# Etches that leave no film behind, and how much of the film's thickness the foot keeps then:

# %%
clean = frame[frame.left_over == 0].copy()
clean["share"] = 1000 * clean.foot / clean.THICKNESS
print(clean.pivot(index="THICKNESS", columns="ETCH", values="share").round(2))
assert (clean.ETCH >= clean.THICKNESS).all()
