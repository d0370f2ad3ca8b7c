#!/usr/bin/env python3
"""Makes the large inputs of the whole-process benchmark from the shared corpus.

usage: make_inputs.py pdb ATOMS OUT     one PDB entry: the atoms of 4hhb.pdb replicated on a
                                        grid (shifted copies) and renumbered, LF line ends
       make_inputs.py sdf COUNT OUT     an SD file of COUNT structures (the corpus's, in turn)
       make_inputs.py cif COUNT OUT     a CIF library of COUNT data blocks (the corpus's small-
                                        molecule blocks in turn, each with a name of its own)
"""
import itertools, os, re, sys
from pathlib import Path

# The corpus sits beside the repository (../shared/corpus); RAVELO_CORPUS names another.
CORPUS = Path(os.environ.get('RAVELO_CORPUS',
                             Path(__file__).resolve().parents[2] / 'shared' / 'corpus'))


def make_pdb(atoms, out):
    lines = (CORPUS / '4hhb.pdb').read_text(encoding='latin-1').splitlines()
    header = [l for l in lines if l.startswith(('HEADER', 'TITLE', 'REMARK   2'))]
    records = [l.ljust(80) for l in lines if l.startswith(('ATOM  ', 'HETATM'))]
    step = 90.0   # wider than the molecule, so that the copies do not overlap
    grid = itertools.product(range(6), repeat=3)
    with open(out, 'w', encoding='latin-1', newline='\n') as f:
        for l in header:
            f.write(l + '\n')
        serial = 0
        for (i, j, k) in grid:
            for r in records:
                if serial == atoms:
                    break
                serial += 1
                x = float(r[30:38]) + i * step - 200
                y = float(r[38:46]) + j * step - 200
                z = float(r[46:54]) + k * step - 200
                # Serials beyond five digits wrap, as in large files written by
                # other programs; the converter numbers atoms itself.
                f.write('%s%5d%s%8.3f%8.3f%8.3f%s\n' % (r[:6], serial % 100000, r[11:30], x, y, z, r[54:]))
            if serial == atoms:
                break
        f.write('END\n')


def make_sdf(count, out):
    structures = []
    for name in ('nci_aids_few.sdf', 'kinases.sdf', 'aspirin.sdf'):
        text = (CORPUS / name).read_text(encoding='latin-1')
        structures += [s.lstrip('\r\n') for s in re.split(r'(?m)^\$\$\$\$\r?\n', text) if s.strip()]
    with open(out, 'w', encoding='latin-1', newline='') as f:
        for n in range(count):
            f.write(structures[n % len(structures)].replace('\r\n', '\n') + '$$$$\n')


def make_cif(count, out):
    blocks = []
    for name in ('cod_1000041_nacl.cif', '1544173.cif', 'vesta_xxvi.cif'):
        text = (CORPUS / name).read_text(encoding='latin-1').replace('\r\n', '\n')
        parts = re.split(r'(?m)^(?=data_)', text)
        blocks += [p for p in parts if p.startswith('data_')]
    with open(out, 'w', encoding='latin-1', newline='') as f:
        for n in range(count):
            body = blocks[n % len(blocks)].split('\n', 1)[1]
            f.write('data_block%05d\n%s' % (n + 1, body if body.endswith('\n') else body + '\n'))


if __name__ == '__main__':
    if len(sys.argv) != 4 or sys.argv[1] not in ('pdb', 'sdf', 'cif'):
        sys.exit(__doc__)
    {'pdb': make_pdb, 'sdf': make_sdf, 'cif': make_cif}[sys.argv[1]](int(sys.argv[2]), sys.argv[3])
