"""What a company file and its journal hold."""

import pathlib


def journal_of(company_file):
    return pathlib.Path(str(company_file) + ".journal")


def saved(company_file):
    """Whatever is safe on disk of the company, as text."""
    files = [company_file, journal_of(company_file)]
    return "".join(file.read_text(encoding="utf-8") for file in files if file.exists())
