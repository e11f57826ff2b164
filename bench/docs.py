def write(results): pass
